-- Shipped area database. The areas table has the same columns as the cache database the
-- client builds from the server's list; city centres live in a table of their own.
CREATE TABLE areas (area_id integer, parent_id integer, area_name VARCHAR, py_name VARCHAR,
                    zipcode integer, area_type integer, special integer);
CREATE TABLE city_centres (area_id integer PRIMARY KEY, area_name VARCHAR, latitude REAL, longitude REAL);
.mode csv
.import --skip 1 @DATA_DIR@/areas.csv areas
.import --skip 1 @DATA_DIR@/city_centres.csv city_centres
CREATE INDEX areas_type_py ON areas (area_type, py_name);
CREATE INDEX areas_parent ON areas (parent_id);
CREATE INDEX areas_name ON areas (area_name);
CREATE INDEX areas_id ON areas (area_id);
