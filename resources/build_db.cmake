# Builds one SQLite database from a schema script and CSV data:
#   cmake -DSQLITE3=... -DSCHEMA=... -DDATA_DIR=... -DOUTPUT=... -P build_db.cmake
# The database is written beside the output and renamed into place, so a failed build
# never leaves a half database that a later build would take as current.
set(DATA_DIR "${DATA_DIR}")
configure_file("${SCHEMA}" "${OUTPUT}.sql" @ONLY)
file(REMOVE "${OUTPUT}.tmp")
execute_process(COMMAND "${SQLITE3}" -bail "${OUTPUT}.tmp"
  INPUT_FILE "${OUTPUT}.sql"
  RESULT_VARIABLE result ERROR_VARIABLE errors)
if(NOT result EQUAL 0 OR NOT errors STREQUAL "")
  file(REMOVE "${OUTPUT}.tmp")
  message(FATAL_ERROR "building ${OUTPUT} failed: ${errors}")
endif()
file(RENAME "${OUTPUT}.tmp" "${OUTPUT}")
file(REMOVE "${OUTPUT}.sql")
