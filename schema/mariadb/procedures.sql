-- The component's stored procedures, for MariaDB.
--
-- Running the script again puts them back as they stand here.
DELIMITER //

-- Reserves the next Delta OIDs and tells the last of them. One statement, so that no other session
-- can reserve the same numbers, whether or not the caller has a transaction.
CREATE OR REPLACE PROCEDURE atualoid (OUT novooid INTEGER)
BEGIN
  UPDATE controlaoid SET UltimoOID = (@pelm_novooid := UltimoOID + Delta);
  SET novooid = @pelm_novooid;
END
//
DELIMITER ;
