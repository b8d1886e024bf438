-- The component's stored procedures, for Oracle.
--
-- Running the script again puts them back as they stand here.

-- Reserves the next Delta OIDs and tells the last of them. One statement, so that no other session
-- can reserve the same numbers, whether or not the caller has a transaction.
CREATE OR REPLACE PROCEDURE atualoid (novooid OUT NUMBER) AS
BEGIN
  UPDATE controlaoid SET UltimoOID = UltimoOID + Delta RETURNING UltimoOID INTO novooid;
END;
/
