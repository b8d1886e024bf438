-- The business tables: what hangs off an item, and the rows that belong to one, for MariaDB.
--
-- Nothing refers to anything by a foreign key: the component stores its rows one by one and takes
-- any OID for the item that a row belongs to. The indexes are those that the component's own
-- statements need, and pages that list what hangs off an item.
--
-- Running the script again changes nothing.
DELIMITER //

-- Definitions of additional data; RTIPO is the category that tells the kind of value.
CREATE TABLE IF NOT EXISTS dadoadicional (
  OID   INTEGER NOT NULL,
  RTIPO INTEGER,
  CONSTRAINT dadoadicional_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//
-- A parameter's definition is found by its category.
CREATE INDEX IF NOT EXISTS dadoadicional_rtipo ON dadoadicional (RTIPO)
//

-- Values of additional data: one of the four columns holds the value, the others are null.
CREATE TABLE IF NOT EXISTS aditivo (
  OID        INTEGER      NOT NULL,
  RITEM      INTEGER,
  RDEFINICAO INTEGER,
  SVALOR     VARCHAR(255),
  NVALOR     DOUBLE,
  DTVALOR    DATETIME,
  LSVALOR    LONGTEXT,
  CONSTRAINT aditivo_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//
-- Values are read and changed by item and definition.
CREATE INDEX IF NOT EXISTS aditivo_ritem ON aditivo (RITEM, RDEFINICAO)
//

-- The tree of categories.
CREATE TABLE IF NOT EXISTS categoria (
  OID         INTEGER      NOT NULL,
  RSUPER      INTEGER,
  NOMEINTERNO VARCHAR(100),
  CONSTRAINT categoria_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//
-- Parameters are found by a category's internal name. Not unique: nobody promises that it is.
CREATE INDEX IF NOT EXISTS categoria_nomeinterno ON categoria (NOMEINTERNO)
//
-- Pages walk down the tree.
CREATE INDEX IF NOT EXISTS categoria_rsuper ON categoria (RSUPER)
//

-- Label texts of an application's controls.
CREATE TABLE IF NOT EXISTS rotulo (
  CONTROLE    VARCHAR(100),
  VALOR       VARCHAR(255),
  RAPLICATIVO INTEGER
) ENGINE = InnoDB
//
-- Labels are read by application.
CREATE INDEX IF NOT EXISTS rotulo_raplicativo ON rotulo (RAPLICATIVO)
//

-- Puts an item into a group item in a role. Any number of times: nothing here is unique.
CREATE TABLE IF NOT EXISTS agrupamento (
  OID    INTEGER NOT NULL,
  RPAPEL INTEGER,
  RGRUPO INTEGER,
  RITEM  INTEGER,
  CONSTRAINT agrupamento_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//
-- A contact's positions are removed by contact and company.
CREATE INDEX IF NOT EXISTS agrupamento_ritem ON agrupamento (RITEM, RGRUPO)
//
-- Pages list a group's members.
CREATE INDEX IF NOT EXISTS agrupamento_rgrupo ON agrupamento (RGRUPO, RPAPEL)
//

-- Puts an item into a category.
CREATE TABLE IF NOT EXISTS classificacao (
  OID        INTEGER NOT NULL,
  RITEM      INTEGER,
  RCATEGORIA INTEGER,
  CONSTRAINT classificacao_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//
-- Pages list an item's categories and a category's items.
CREATE INDEX IF NOT EXISTS classificacao_ritem ON classificacao (RITEM)
//
CREATE INDEX IF NOT EXISTS classificacao_rcategoria ON classificacao (RCATEGORIA)
//

-- Numbers handed out by sequences, one row a number. The key keeps apart two callers that race
-- for a number. OID is no key: the last OID of a range is handed out twice, and the component
-- takes
-- a refused row for a number that is taken, so with a key on OID it would try numbers for ever.
CREATE TABLE IF NOT EXISTS chaveunica (
  OID       INTEGER      NOT NULL,
  DESCRICAO VARCHAR(100) NOT NULL,
  CONSTRAINT chaveunica_chave PRIMARY KEY (DESCRICAO)
) ENGINE = InnoDB
//

-- Persons, by the OID of their item.
CREATE TABLE IF NOT EXISTS pessoa (
  OID           INTEGER      NOT NULL,
  RAZAOSOCIAL   VARCHAR(255),
  IDENTIFICADOR VARCHAR(50),
  CONSTRAINT pessoa_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//

-- Natural persons, by the OID of their item.
CREATE TABLE IF NOT EXISTS pessoafisica (
  OID INTEGER NOT NULL,
  CONSTRAINT pessoafisica_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//

-- Positions that a person can hold, by the OID of their item.
CREATE TABLE IF NOT EXISTS cargo (
  OID INTEGER NOT NULL,
  CONSTRAINT cargo_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//

-- Addresses, by the OID of their item.
CREATE TABLE IF NOT EXISTS endereco (
  OID         INTEGER      NOT NULL,
  RITEM       INTEGER,
  RCIDADE     INTEGER,
  CEP         VARCHAR(20),
  BAIRRO      VARCHAR(100),
  COMPLEMENTO VARCHAR(100),
  NUMERO      VARCHAR(20),
  RUA         VARCHAR(255),
  REFERENCIA  VARCHAR(255),
  CONSTRAINT endereco_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//
-- Pages list an item's addresses.
CREATE INDEX IF NOT EXISTS endereco_ritem ON endereco (RITEM)
//

-- Ways of reaching an item.
CREATE TABLE IF NOT EXISTS comunicacao (
  OID       INTEGER      NOT NULL,
  RITEM     INTEGER,
  RTIPO     INTEGER,
  RENDERECO INTEGER,
  VALOR     VARCHAR(255),
  CONSTRAINT comunicacao_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//
-- Pages look for an item's telephone or e-mail by its kind.
CREATE INDEX IF NOT EXISTS comunicacao_ritem ON comunicacao (RITEM, RTIPO)
//

-- Ledger accounts, by the OID of their item.
CREATE TABLE IF NOT EXISTS contacontabil (
  OID              INTEGER     NOT NULL,
  HIERARQUIANUMERO VARCHAR(50),
  CONSTRAINT contacontabil_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//

-- The ledger account of an item, by chart of accounts, value source and category.
CREATE TABLE IF NOT EXISTS contaassociada (
  OID            INTEGER NOT NULL,
  RCONTACONTABIL INTEGER,
  RPLANODECONTAS INTEGER,
  RITEM          INTEGER,
  RFONTEDOVALOR  INTEGER,
  RCATEGORIA     INTEGER,
  CONSTRAINT contaassociada_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//
-- Accounts are looked up by item.
CREATE INDEX IF NOT EXISTS contaassociada_ritem ON contaassociada (RITEM)
//

-- A workstation's stays in the system.
CREATE TABLE IF NOT EXISTS sessaodeuso (
  OID      INTEGER  NOT NULL,
  INICIO   DATETIME,
  TERMINO  DATETIME,
  SITUACAO SMALLINT,
  CONSTRAINT sessaodeuso_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//
-- Few sessions are open, and only open ones are looked for.
CREATE INDEX IF NOT EXISTS sessaodeuso_aberta ON sessaodeuso (TERMINO, SITUACAO)
//

-- The applications opened in them.
CREATE TABLE IF NOT EXISTS sessaoaplicativo (
  OID          INTEGER      NOT NULL,
  RSESSAODEUSO INTEGER,
  RAPLICATIVO  INTEGER,
  RUSUARIO     INTEGER,
  ESTACAO      VARCHAR(100),
  INICIO       DATETIME,
  TERMINO      DATETIME,
  CONSTRAINT sessaoaplicativo_chave PRIMARY KEY (OID)
) ENGINE = InnoDB
//
-- From an open usage session to its applications.
CREATE INDEX IF NOT EXISTS sessaoaplicativo_rsessaodeuso ON sessaoaplicativo (RSESSAODEUSO)
//
-- Whether an application is open on a workstation.
CREATE INDEX IF NOT EXISTS sessaoaplicativo_aberta ON sessaoaplicativo (ESTACAO, RAPLICATIVO, TERMINO)
//
DELIMITER ;
