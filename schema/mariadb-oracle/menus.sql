-- The application's menus, and who may use what, for MariaDB read as Oracle (sql_mode ORACLE).
--
-- The other tables and the views are those of schema/mariadb. For the administrator: sessions need
-- sql_mode 'ORACLE,EMPTY_STRING_IS_NULL' with the strict modes, lower_case_table_names=1 and, to
-- compare texts as Oracle does, a database with the collation utf8mb4_bin.
--
-- Running the script again changes nothing.
DELIMITER //

-- The numbers of menu options. A session that asks for the last number given (@@identity) is
-- answered from the sequence that is named as the table with _ID behind it: keep the name.
CREATE SEQUENCE IF NOT EXISTS Pelm_Menu_ID START WITH 8 INCREMENT BY 1 NOCACHE
//
-- Menu options, numbered by the engine; a number is never given twice. Keys up to 7 are reserved,
-- 7 being the root of the tree: the component does not delete them. So the first number given is
-- 8.
CREATE TABLE IF NOT EXISTS Pelm_Menu (
  id              INTEGER       NOT NULL DEFAULT NEXTVAL(Pelm_Menu_ID),
  Nome            VARCHAR(1000),
  Link            VARCHAR(2000),
  rEscopo         INTEGER,
  rListadeObjetos INTEGER,
  Ordem           INTEGER,
  CONSTRAINT pelm_menu_chave PRIMARY KEY (id)
) ENGINE = InnoDB
//
-- A level is read in this order, and places are given by it.
CREATE INDEX IF NOT EXISTS pelm_menu_ordem ON Pelm_Menu (rEscopo, Ordem, id)
//

-- Users, by the OID of their item.
CREATE TABLE IF NOT EXISTS usuario (
  OID INTEGER NOT NULL,
  CONSTRAINT usuario_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//

-- What a user, a group or everyone (item 1) may do with a list of objects: 0 is nothing.
CREATE TABLE IF NOT EXISTS permissao (
  OID      INTEGER  NOT NULL,
  RUSUARIO INTEGER,
  RESCOPO  INTEGER,
  ACESSO   SMALLINT,
  CONSTRAINT permissao_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//
-- Permissions are asked for by holder and list.
CREATE INDEX IF NOT EXISTS permissao_rusuario ON permissao (RUSUARIO, RESCOPO)
//

-- Lists of objects, by the OID of their item, and the list that is a list's domain.
CREATE TABLE IF NOT EXISTS listadeobjetos (
  OID      INTEGER NOT NULL,
  RDOMINIO INTEGER,
  CONSTRAINT listadeobjetos_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//
DELIMITER ;
