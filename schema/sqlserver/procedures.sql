-- The component's stored procedures, for SQL Server.
--
-- Running the script again puts them back as they stand here.

-- Reserves the next Delta OIDs and tells the last of them. One statement, so that no other session
-- can reserve the same numbers, whether or not the caller has a transaction.
IF OBJECT_ID(N'atualoid', N'P') IS NULL EXEC(N'CREATE PROCEDURE atualoid AS RETURN 0')
GO
ALTER PROCEDURE atualoid @novooid INTEGER OUTPUT AS
SET NOCOUNT ON
UPDATE controlaoid SET @novooid = UltimoOID = UltimoOID + Delta
GO
