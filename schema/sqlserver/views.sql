-- The views: the rows of a table whose item is there, for SQL Server.
--
-- Running the script again changes nothing.

-- Every item.
IF OBJECT_ID(N'item_r', N'V') IS NULL EXEC(N'
CREATE VIEW item_r AS
SELECT OID, CID, NOME, CODIGO, RESCOPO, EXCLUIDO FROM item')
GO

-- Every position.
IF OBJECT_ID(N'cargo_r', N'V') IS NULL EXEC(N'
CREATE VIEW cargo_r AS
SELECT cargo.OID, item.NOME FROM cargo JOIN item ON item.OID = cargo.OID')
GO

-- RESCOPO is the scope of the association's own item: of an analytic account, the synthetic one.
IF OBJECT_ID(N'contaassociada_r', N'V') IS NULL EXEC(N'
CREATE VIEW contaassociada_r AS
SELECT contaassociada.OID, RCONTACONTABIL, RPLANODECONTAS, RITEM, RFONTEDOVALOR, RCATEGORIA,
       item.RESCOPO
FROM contaassociada JOIN item ON item.OID = contaassociada.OID')
GO

-- Without RESCOPO: the component joins it with contaassociada_r and says RESCOPO without a table.
IF OBJECT_ID(N'contacontabil_r', N'V') IS NULL EXEC(N'
CREATE VIEW contacontabil_r AS
SELECT contacontabil.OID, item.NOME, HIERARQUIANUMERO
FROM contacontabil JOIN item ON item.OID = contacontabil.OID')
GO

-- The lists that have a domain: the component takes a row for one, and fails on a null.
IF OBJECT_ID(N'listadeobjetos_r', N'V') IS NULL EXEC(N'
CREATE VIEW listadeobjetos_r AS
SELECT OID, RDOMINIO FROM listadeobjetos WHERE RDOMINIO IS NOT NULL')
GO
