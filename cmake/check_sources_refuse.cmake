# Runs scripts/check_sources on a small tree with known faults and fails unless exactly
# those are refused. Called by ctest with -DCHECK=<script> -DROOT=<scratch directory>.
file(REMOVE_RECURSE ${ROOT})
# A layer crossed the wrong way, and its allowed reverse.
file(WRITE ${ROOT}/core/x.cpp "#include \"core/x.h\"\n#include \"shell/y.h\"\n#include \"platform/env.h\"\n")
file(WRITE ${ROOT}/shell/y.h "#pragma once\n#include \"core/x.h\"\n#include \"features/orders/o.h\"\n")
# A folder no one listed takes its parent's layer.
file(WRITE ${ROOT}/features/coupons/c.cpp "#include \"core/x.h\"\n#include \"shell/y.h\"\n")
# A private header reached from outside its folder, and a library outside its adapters.
file(WRITE ${ROOT}/features/orders/o.cpp "#include \"features/discovery/detail/p.h\"\n#include <curl/curl.h>\n")
# A text outside a texts header and a settings key outside its header; comments and
# tests may quote both.
file(WRITE ${ROOT}/shell/t.cpp "// \"支付成功\" is quoted here\nshow(\"支付成功\"); // ok\nenv.settings->setBool(true, \"isLaunched\");\nshow(\"ok\"); /* \"支付\" */\n")
file(WRITE ${ROOT}/shell/t_test.cpp "show(\"支付成功\");\n")
# Test code may reach the Linux adapters and the doubles.
file(WRITE ${ROOT}/features/orders/o_test.cpp "#include \"platform/linux/z.h\"\n#include \"platform/testing/t.h\"\n")

execute_process(COMMAND ${CHECK} ${ROOT} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT rc EQUAL 1)
  message(FATAL_ERROR "expected exit 1, got ${rc}:\n${out}${err}")
endif()
set(expected
  "core/x.cpp:2: core may not include shell (shell/y.h)"
  "features/coupons/c.cpp:2: features may not include shell (shell/y.h)"
  "features/orders/o.cpp:1: features/discovery/detail/p.h is private to features/discovery/"
  "features/orders/o.cpp:2: <curl/curl.h> is not for orders code here"
  "shell/t.cpp:2: a text in the application's language belongs in a texts header"
  "shell/t.cpp:3: a settings key belongs in core/common/settings_keys.h")
foreach(line IN LISTS expected)
  string(FIND "${out}" "${line}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "not refused: ${line}\noutput:\n${out}")
  endif()
endforeach()
string(REGEX MATCHALL "\n" lines "${out}")
list(LENGTH lines count)
list(LENGTH expected wanted)
if(NOT count EQUAL wanted)
  message(FATAL_ERROR "expected ${wanted} refusals, got ${count}:\n${out}")
endif()
