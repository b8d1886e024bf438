-- Functions that the component's SQL calls and Oracle does not have.
--
-- Running the script again changes nothing.

-- The length of a text without the blanks at its end: the translation of SQL leaves LEN as it is.
CREATE OR REPLACE FUNCTION LEN (texto IN VARCHAR2) RETURN NUMBER DETERMINISTIC AS
BEGIN
  RETURN LENGTH(RTRIM(texto));
END;
/
