-- Functions that the component's SQL calls and MariaDB does not have.
--
-- Running the script again changes nothing.
DELIMITER //

-- The length of a text without the blanks at its end.
CREATE OR REPLACE FUNCTION LEN (texto LONGTEXT) RETURNS INTEGER DETERMINISTIC
RETURN CHAR_LENGTH(RTRIM(texto))
//

-- Now.
CREATE OR REPLACE FUNCTION GETDATE () RETURNS DATETIME
RETURN NOW()
//
DELIMITER ;
