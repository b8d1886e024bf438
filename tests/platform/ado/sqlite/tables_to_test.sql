-- A table with a column of each type, and a few rows in the component's own tables.
CREATE TABLE tipos (id INT IDENTITY PRIMARY KEY, inteiro INT, curto SMALLINT, grande BIGINT, numero FLOAT, moeda MONEY, marca BIT, quando DATETIME, texto VARCHAR(20), memo TEXT);
INSERT INTO tipos (inteiro, curto, grande, numero, moeda, marca, quando, texto, memo) VALUES
  (-5, 7, 5000000000, 1.5, 10.25, 1, '20080305', 'abc', 'Memo'),
  (NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL);

INSERT INTO item (OID, CID, NOME, CODIGO, RESCOPO, CRIADOPOR, CRIADOEM, ATUALIZADOPOR, ATUALIZADOEM, OBSERVACAO, EXCLUIDO) VALUES
  (1, 1, 'Todos', '', 7, 1, '2008-01-01', 1, '2008-01-01', '', 0),
  (8, 20, 'João da Silva', 'A1', 7, 1, '2008-03-05 14:07:09', 1, '2008-03-05 14:07:09', '', 0),
  (9, 20, 'ação', 'a2', 7, 1, '2007-12-31 23:59:59', 1, '2008-02-29', 'd''água', 0),
  (10, 45, 'Zé', '015', 8, 8, '2008-03-06', 8, '2008-03-06', NULL, 1),
  (100, 5, 'Conta', '', 8, 1, '2008-01-01', 1, '2008-01-01', '', 0),
  (110, 6, 'Associada', '', 9, 1, '2008-01-01', 1, '2008-01-01', '', 0),
  (111, 6, 'Associada', '', 9, 1, '2008-01-01', 1, '2008-01-01', '', 0);
INSERT INTO usuario (OID) VALUES (8);
INSERT INTO cargo (OID) VALUES (10);
INSERT INTO comunicacao (OID, RITEM, RTIPO, RENDERECO) VALUES (20, 10, 1121, 8);
INSERT INTO agrupamento (OID, RGRUPO, RITEM, RPAPEL) VALUES (30, 9, 8, 10);
INSERT INTO categoria (OID, NOMEINTERNO) VALUES (50, 'CARGO'), (500, 'PRAZO');
INSERT INTO dadoadicional (OID, RTIPO) VALUES (60, 500);
INSERT INTO aditivo (OID, RITEM, RDEFINICAO, SVALOR, DTVALOR, NVALOR) VALUES (70, 8, 60, 'trinta', '2008-03-05', 30.5);
INSERT INTO rotulo (RAPLICATIVO, CONTROLE, VALOR) VALUES (5, 'txtNome', 'Nome');
INSERT INTO chaveunica (OID, DESCRICAO) VALUES (90, '##PED##1'), (91, '##PED##15'), (92, '##PEDX##99'), (93, '##REC##x');
INSERT INTO contacontabil (OID, HIERARQUIANUMERO) VALUES (100, '1.01.002');
INSERT INTO contaassociada (OID, RCONTACONTABIL, RPLANODECONTAS, RITEM, RFONTEDOVALOR, RCATEGORIA) VALUES (110, 100, 3, 8, 7, 12493), (111, 100, 3, 8, 7, 7);
INSERT INTO sessaodeuso (OID, SITUACAO) VALUES (120, 1);
INSERT INTO sessaoaplicativo (OID, RSESSAODEUSO, RAPLICATIVO, ESTACAO) VALUES (130, 120, 5, 'PC01');
INSERT INTO Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) VALUES (21, 'Clientes', NULL, 7, NULL, 1), (22, 'Relatórios', 'r.asp', 7, 8, 2), (23, 'Lista', 'l.asp', 21, NULL, 1);
INSERT INTO permissao (OID, RUSUARIO, RESCOPO, ACESSO) VALUES (140, 8, 8, 0);
INSERT INTO listadeobjetos (OID, RDOMINIO) VALUES (10, 8);
