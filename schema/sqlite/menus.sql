-- The application's menus, and who may use what, for the embedded engine (SQLite).
--
-- What tables.sql says of its columns holds here. Who belongs to which group stands in
-- agrupamento, who an item's user is in comunicacao (business.sql). Nothing is unique but the keys:
-- which permissions there are is the application's affair.
--
-- Running the script again changes nothing.

-- Menu options, numbered by the engine; a number is never given twice. Keys up to 7 are reserved,
-- 7 being the root of the tree: the component does not delete them.
CREATE TABLE IF NOT EXISTS Pelm_Menu (
  id              INTEGER       NOT NULL PRIMARY KEY AUTOINCREMENT CHECK (id << 32 >> 32 = id),
  Nome            VARCHAR(1000) COLLATE NOCASE CHECK (length(Nome) <= 1000),
  Link            VARCHAR(2000) COLLATE NOCASE CHECK (length(Link) <= 2000),
  rEscopo         INTEGER       CHECK (rEscopo << 32 >> 32 = rEscopo),
  rListadeObjetos INTEGER       CHECK (rListadeObjetos << 32 >> 32 = rListadeObjetos),
  Ordem           INTEGER       CHECK (Ordem << 32 >> 32 = Ordem)
);
-- So the first number given is 8.
INSERT INTO sqlite_sequence (name, seq)
SELECT 'Pelm_Menu', 7 WHERE NOT EXISTS (SELECT 1 FROM sqlite_sequence WHERE name = 'Pelm_Menu');
-- A level is read in this order, and places are given by it.
CREATE INDEX IF NOT EXISTS pelm_menu_ordem ON Pelm_Menu (rEscopo, Ordem, id);

-- Users, by the OID of their item.
CREATE TABLE IF NOT EXISTS usuario (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID)
) WITHOUT ROWID;

-- What a user, a group or everyone (item 1) may do with a list of objects: 0 is nothing.
CREATE TABLE IF NOT EXISTS permissao (
  OID      INTEGER  NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  RUSUARIO INTEGER  CHECK (RUSUARIO << 32 >> 32 = RUSUARIO),
  RESCOPO  INTEGER  CHECK (RESCOPO << 32 >> 32 = RESCOPO),
  ACESSO   SMALLINT CHECK (ACESSO << 48 >> 48 = ACESSO)
) WITHOUT ROWID;
-- Permissions are asked for by holder and list.
CREATE INDEX IF NOT EXISTS permissao_rusuario ON permissao (RUSUARIO, RESCOPO);

-- Lists of objects, by the OID of their item, and the list that is a list's domain.
CREATE TABLE IF NOT EXISTS listadeobjetos (
  OID      INTEGER NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  RDOMINIO INTEGER CHECK (RDOMINIO << 32 >> 32 = RDOMINIO)
) WITHOUT ROWID;

-- The lists that have a domain: the component takes a row for one, and fails on a null.
CREATE VIEW IF NOT EXISTS listadeobjetos_r AS
SELECT OID, RDOMINIO FROM listadeobjetos WHERE RDOMINIO IS NOT NULL;
