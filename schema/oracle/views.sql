-- The views: the rows of a table whose item is there, for Oracle.
--
-- Running the script again changes nothing.

-- Every item.
CREATE OR REPLACE VIEW item_r AS
SELECT OID, CID, NOME, CODIGO, RESCOPO, EXCLUIDO FROM item
/

-- Every position.
CREATE OR REPLACE VIEW cargo_r AS
SELECT cargo.OID, item.NOME FROM cargo JOIN item ON item.OID = cargo.OID
/

-- RESCOPO is the scope of the association's own item: of an analytic account, the synthetic one.
CREATE OR REPLACE VIEW contaassociada_r AS
SELECT contaassociada.OID, RCONTACONTABIL, RPLANODECONTAS, RITEM, RFONTEDOVALOR, RCATEGORIA,
       item.RESCOPO
FROM contaassociada JOIN item ON item.OID = contaassociada.OID
/

-- Without RESCOPO: the component joins it with contaassociada_r and says RESCOPO without a table.
CREATE OR REPLACE VIEW contacontabil_r AS
SELECT contacontabil.OID, item.NOME, HIERARQUIANUMERO
FROM contacontabil JOIN item ON item.OID = contacontabil.OID
/

-- The lists that have a domain: the component takes a row for one, and fails on a null.
CREATE OR REPLACE VIEW listadeobjetos_r AS
SELECT OID, RDOMINIO FROM listadeobjetos WHERE RDOMINIO IS NOT NULL
/
