-- The views: the rows of a table whose item is there, for the embedded engine (SQLite).
--
-- Running the script again changes nothing.

-- Every item.
CREATE VIEW IF NOT EXISTS item_r AS
SELECT OID, CID, NOME, CODIGO, RESCOPO, EXCLUIDO FROM item;

-- Every position.
CREATE VIEW IF NOT EXISTS cargo_r AS
SELECT cargo.OID, item.NOME FROM cargo JOIN item ON item.OID = cargo.OID;

-- RESCOPO is the scope of the association's own item: of an analytic account, the synthetic one.
CREATE VIEW IF NOT EXISTS contaassociada_r AS
SELECT contaassociada.OID, RCONTACONTABIL, RPLANODECONTAS, RITEM, RFONTEDOVALOR, RCATEGORIA,
       item.RESCOPO
FROM contaassociada JOIN item ON item.OID = contaassociada.OID;

-- Without RESCOPO: the component joins it with contaassociada_r and says RESCOPO without a table.
CREATE VIEW IF NOT EXISTS contacontabil_r AS
SELECT contacontabil.OID, item.NOME, HIERARQUIANUMERO
FROM contacontabil JOIN item ON item.OID = contacontabil.OID;
