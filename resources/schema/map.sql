-- The sandbox's map: the areas it draws (cities and their counties, with where each name
-- goes) and their outlines, WGS-84 degrees as "lng lat lng lat ..." text, one ring a row.
CREATE TABLE map_areas (area_id integer PRIMARY KEY, city_id integer, area_name VARCHAR, area_type integer,
                        label_latitude REAL, label_longitude REAL);
CREATE TABLE map_rings (area_id integer, ring integer, points VARCHAR, PRIMARY KEY (area_id, ring));
.mode csv
.import --skip 1 @DATA_DIR@/map_areas.csv map_areas
.import --skip 1 @DATA_DIR@/map_rings.csv map_rings
