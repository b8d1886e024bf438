-- The component's tables, for MariaDB.
--
-- For the administrator: run the files of this folder in the database of the application, in the
-- order tables, business, menus, views, functions, procedures, first_rows (`pelm schema mariadb`
-- prints them so, for the client program mariadb). MariaDB 10.5 or later. The server must be set
-- up with lower_case_table_names=1: pages write the names of tables in any case. Make the database
-- with the collation utf8mb4_uca1400_as_ci: then texts compare without case and with accents.
--
-- Running the script again changes nothing.
DELIMITER //

-- Every record of the application is an item.
CREATE TABLE IF NOT EXISTS item (
  OID           INTEGER       NOT NULL,
  CID           INTEGER       NOT NULL,
  NOME          VARCHAR(255),
  CODIGO        VARCHAR(50),
  RESCOPO       INTEGER,
  CRIADOPOR     INTEGER,
  CRIADOEM      DATETIME,
  ATUALIZADOPOR INTEGER,
  ATUALIZADOEM  DATETIME,
  OBSERVACAO    VARCHAR(4000),
  EXCLUIDO      SMALLINT,
  CONSTRAINT item_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//

-- The recycle bin. One item may be in it several times, so its OID is no key here.
CREATE TABLE IF NOT EXISTS excluido (
  OID         INTEGER      NOT NULL,
  CID         INTEGER,
  NOME        VARCHAR(255),
  CODIGO      VARCHAR(50),
  EXCLUIDOPOR INTEGER,
  EXCLUIDOEM  DATETIME,
  RAPLICATIVO INTEGER
) ENGINE = InnoDB
//
CREATE INDEX IF NOT EXISTS excluido_oid ON excluido (OID)
//

-- The counter of OIDs: one row. A range of Delta numbers is reserved at a time.
CREATE TABLE IF NOT EXISTS controlaoid (
  Delta     SMALLINT NOT NULL CHECK (Delta > 0),
  UltimoOID INTEGER  NOT NULL
) ENGINE = InnoDB
//
DELIMITER ;
