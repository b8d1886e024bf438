-- The rows of a table whose item is there, as the component's own statements name them.

-- Every item.
CREATE VIEW item_r AS
  SELECT OID, CID, NOME, CODIGO, RESCOPO, EXCLUIDO FROM item;

-- Every position.
CREATE VIEW cargo_r AS
  SELECT cargo.OID, item.NOME FROM cargo JOIN item ON item.OID = cargo.OID;

-- RESCOPO is the scope of the association's own item: for an analytic account the synthetic one.
CREATE VIEW contaassociada_r AS
  SELECT contaassociada.OID, RCONTACONTABIL, RPLANODECONTAS, RITEM, RFONTEDOVALOR, RCATEGORIA,
         item.RESCOPO
  FROM contaassociada JOIN item ON item.OID = contaassociada.OID;

-- No RESCOPO: the component's join with contaassociada_r names that column without a table.
CREATE VIEW contacontabil_r AS
  SELECT contacontabil.OID, item.NOME, HIERARQUIANUMERO
  FROM contacontabil JOIN item ON item.OID = contacontabil.OID;
