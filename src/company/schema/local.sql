-- The local store (klgen.MDB): a SQLite file of its own in the program's folder.
-- Income-tax settings; only the years are read.
CREATE TABLE ITSETTING (
  ASSYEAR           INTEGER PRIMARY KEY
);
-- Sample years: financial years 2023 to 2027 are inside the range (ASSYEAR minus 1).
INSERT OR IGNORE INTO ITSETTING (ASSYEAR) VALUES (2024), (2025), (2026), (2027), (2028);
