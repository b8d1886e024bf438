-- The component's stored procedures, for MariaDB read as Oracle (sql_mode ORACLE).
--
-- Running the script again puts them back as they stand here.
DELIMITER //

-- Reserves the next Delta OIDs and tells the last of them. One statement, so that no other session
-- can reserve the same numbers, whether or not the caller has a transaction.
CREATE OR REPLACE PROCEDURE atualoid (novooid OUT INTEGER) AS
BEGIN
  UPDATE controlaoid SET UltimoOID = (@pelm_novooid := UltimoOID + Delta);
  novooid := @pelm_novooid;
END;
//
DELIMITER ;
