-- Functions that the component's SQL calls and MariaDB read as Oracle (sql_mode ORACLE) does not
-- have.
--
-- Running the script again changes nothing.
DELIMITER //

-- The length of a text without the blanks at its end: the translation of SQL leaves LEN as it is.
CREATE OR REPLACE FUNCTION LEN (texto LONGTEXT) RETURN INTEGER DETERMINISTIC AS
BEGIN
  RETURN CHAR_LENGTH(RTRIM(texto));
END;
//

-- A number from a text; a text that is no number is an error, as on Oracle.
CREATE OR REPLACE FUNCTION TO_NUMBER (texto LONGTEXT) RETURN DOUBLE DETERMINISTIC AS
BEGIN
  IF texto IS NOT NULL AND texto NOT RLIKE '^ *[-+]?([0-9]+[.]?[0-9]*|[.][0-9]+) *$' THEN
    SIGNAL SQLSTATE '22018' SET MESSAGE_TEXT = 'invalid number';
  END IF;
  RETURN CAST(texto AS DOUBLE);
END;
//

-- A date from a text, by a format of yyyy, mm, dd, hh24, mi and ss.
CREATE OR REPLACE FUNCTION TO_DATE (texto VARCHAR(100), formato VARCHAR(100)) RETURN DATETIME
DETERMINISTIC AS
BEGIN
  RETURN STR_TO_DATE(texto, REPLACE(REPLACE(REPLACE(REPLACE(REPLACE(REPLACE(LOWER(formato),
      'yyyy', '%Y'), 'mm', '%m'), 'dd', '%d'), 'hh24', '%H'), 'mi', '%i'), 'ss', '%s'));
END;
//
DELIMITER ;
