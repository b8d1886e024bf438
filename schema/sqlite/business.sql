-- The business tables: what hangs off an item, and the rows that belong to one, for the embedded
-- engine (SQLite).
--
-- What tables.sql says of its columns holds here. Nothing refers to anything by a foreign key: the
-- component stores its rows one by one and takes any OID for the item that a row belongs to. The
-- indexes are those that the component's own statements need, and pages that list what hangs off
-- an item.
--
-- Running the script again changes nothing.

-- Definitions of additional data; RTIPO is the category that tells the kind of value.
CREATE TABLE IF NOT EXISTS dadoadicional (
  OID   INTEGER NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  RTIPO INTEGER CHECK (RTIPO << 32 >> 32 = RTIPO)
) WITHOUT ROWID;
-- A parameter's definition is found by its category.
CREATE INDEX IF NOT EXISTS dadoadicional_rtipo ON dadoadicional (RTIPO);

-- Values of additional data: one of the four columns holds the value, the others are null.
CREATE TABLE IF NOT EXISTS aditivo (
  OID        INTEGER      NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  RITEM      INTEGER      CHECK (RITEM << 32 >> 32 = RITEM),
  RDEFINICAO INTEGER      CHECK (RDEFINICAO << 32 >> 32 = RDEFINICAO),
  SVALOR     VARCHAR(255) COLLATE NOCASE CHECK (length(SVALOR) <= 255),
  NVALOR     NUMERIC      CHECK (typeof(NVALOR) IN ('integer', 'real', 'null')),
  DTVALOR    DATETIME     CHECK (DTVALOR GLOB '[0-9]???-??-?? ??:??:??'),
  LSVALOR    TEXT         COLLATE NOCASE
) WITHOUT ROWID;
-- Values are read and changed by item and definition.
CREATE INDEX IF NOT EXISTS aditivo_ritem ON aditivo (RITEM, RDEFINICAO);

-- The tree of categories.
CREATE TABLE IF NOT EXISTS categoria (
  OID         INTEGER      NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  RSUPER      INTEGER      CHECK (RSUPER << 32 >> 32 = RSUPER),
  NOMEINTERNO VARCHAR(100) COLLATE NOCASE CHECK (length(NOMEINTERNO) <= 100)
) WITHOUT ROWID;
-- Parameters are found by a category's internal name. Not unique: nobody promises that it is.
CREATE INDEX IF NOT EXISTS categoria_nomeinterno ON categoria (NOMEINTERNO);
-- Pages walk down the tree.
CREATE INDEX IF NOT EXISTS categoria_rsuper ON categoria (RSUPER);

-- Label texts of an application's controls.
CREATE TABLE IF NOT EXISTS rotulo (
  CONTROLE    VARCHAR(100) COLLATE NOCASE CHECK (length(CONTROLE) <= 100),
  VALOR       VARCHAR(255) COLLATE NOCASE CHECK (length(VALOR) <= 255),
  RAPLICATIVO INTEGER      CHECK (RAPLICATIVO << 32 >> 32 = RAPLICATIVO)
);
-- Labels are read by application.
CREATE INDEX IF NOT EXISTS rotulo_raplicativo ON rotulo (RAPLICATIVO);

-- Puts an item into a group item in a role. Any number of times: nothing here is unique.
CREATE TABLE IF NOT EXISTS agrupamento (
  OID    INTEGER NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  RPAPEL INTEGER CHECK (RPAPEL << 32 >> 32 = RPAPEL),
  RGRUPO INTEGER CHECK (RGRUPO << 32 >> 32 = RGRUPO),
  RITEM  INTEGER CHECK (RITEM << 32 >> 32 = RITEM)
) WITHOUT ROWID;
-- A contact's positions are removed by contact and company.
CREATE INDEX IF NOT EXISTS agrupamento_ritem ON agrupamento (RITEM, RGRUPO);
-- Pages list a group's members.
CREATE INDEX IF NOT EXISTS agrupamento_rgrupo ON agrupamento (RGRUPO, RPAPEL);

-- Puts an item into a category.
CREATE TABLE IF NOT EXISTS classificacao (
  OID        INTEGER NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  RITEM      INTEGER CHECK (RITEM << 32 >> 32 = RITEM),
  RCATEGORIA INTEGER CHECK (RCATEGORIA << 32 >> 32 = RCATEGORIA)
) WITHOUT ROWID;
-- Pages list an item's categories and a category's items.
CREATE INDEX IF NOT EXISTS classificacao_ritem ON classificacao (RITEM);
CREATE INDEX IF NOT EXISTS classificacao_rcategoria ON classificacao (RCATEGORIA);

-- Numbers handed out by sequences, one row a number. The key keeps apart two callers that race
-- for a number. OID is no key: the last OID of a range is handed out twice, and the component takes
-- a refused row for a number that is taken, so with a key on OID it would try numbers for ever. It
-- is kept from being null by its check: PRAGMA integrity_check of some versions of the engine takes
-- a column declared NOT NULL for null in a table like this one.
CREATE TABLE IF NOT EXISTS chaveunica (
  OID       INTEGER      CHECK (OID IS NOT NULL AND OID << 32 >> 32 = OID),
  DESCRICAO VARCHAR(100) COLLATE NOCASE NOT NULL PRIMARY KEY CHECK (length(DESCRICAO) <= 100)
) WITHOUT ROWID;

-- Persons, by the OID of their item.
CREATE TABLE IF NOT EXISTS pessoa (
  OID           INTEGER      NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  RAZAOSOCIAL   VARCHAR(255) COLLATE NOCASE CHECK (length(RAZAOSOCIAL) <= 255),
  IDENTIFICADOR VARCHAR(50)  COLLATE NOCASE CHECK (length(IDENTIFICADOR) <= 50)
) WITHOUT ROWID;

-- Natural persons, by the OID of their item.
CREATE TABLE IF NOT EXISTS pessoafisica (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID)
) WITHOUT ROWID;

-- Positions that a person can hold, by the OID of their item.
CREATE TABLE IF NOT EXISTS cargo (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID)
) WITHOUT ROWID;

-- Addresses, by the OID of their item.
CREATE TABLE IF NOT EXISTS endereco (
  OID         INTEGER      NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  RITEM       INTEGER      CHECK (RITEM << 32 >> 32 = RITEM),
  RCIDADE     INTEGER      CHECK (RCIDADE << 32 >> 32 = RCIDADE),
  CEP         VARCHAR(20)  COLLATE NOCASE CHECK (length(CEP) <= 20),
  BAIRRO      VARCHAR(100) COLLATE NOCASE CHECK (length(BAIRRO) <= 100),
  COMPLEMENTO VARCHAR(100) COLLATE NOCASE CHECK (length(COMPLEMENTO) <= 100),
  NUMERO      VARCHAR(20)  COLLATE NOCASE CHECK (length(NUMERO) <= 20),
  RUA         VARCHAR(255) COLLATE NOCASE CHECK (length(RUA) <= 255),
  REFERENCIA  VARCHAR(255) COLLATE NOCASE CHECK (length(REFERENCIA) <= 255)
) WITHOUT ROWID;
-- Pages list an item's addresses.
CREATE INDEX IF NOT EXISTS endereco_ritem ON endereco (RITEM);

-- Ways of reaching an item.
CREATE TABLE IF NOT EXISTS comunicacao (
  OID       INTEGER      NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  RITEM     INTEGER      CHECK (RITEM << 32 >> 32 = RITEM),
  RTIPO     INTEGER      CHECK (RTIPO << 32 >> 32 = RTIPO),
  RENDERECO INTEGER      CHECK (RENDERECO << 32 >> 32 = RENDERECO),
  VALOR     VARCHAR(255) COLLATE NOCASE CHECK (length(VALOR) <= 255)
) WITHOUT ROWID;
-- Pages look for an item's telephone or e-mail by its kind.
CREATE INDEX IF NOT EXISTS comunicacao_ritem ON comunicacao (RITEM, RTIPO);

-- Ledger accounts, by the OID of their item.
CREATE TABLE IF NOT EXISTS contacontabil (
  OID              INTEGER     NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  HIERARQUIANUMERO VARCHAR(50) COLLATE NOCASE CHECK (length(HIERARQUIANUMERO) <= 50)
) WITHOUT ROWID;

-- The ledger account of an item, by chart of accounts, value source and category.
CREATE TABLE IF NOT EXISTS contaassociada (
  OID            INTEGER NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  RCONTACONTABIL INTEGER CHECK (RCONTACONTABIL << 32 >> 32 = RCONTACONTABIL),
  RPLANODECONTAS INTEGER CHECK (RPLANODECONTAS << 32 >> 32 = RPLANODECONTAS),
  RITEM          INTEGER CHECK (RITEM << 32 >> 32 = RITEM),
  RFONTEDOVALOR  INTEGER CHECK (RFONTEDOVALOR << 32 >> 32 = RFONTEDOVALOR),
  RCATEGORIA     INTEGER CHECK (RCATEGORIA << 32 >> 32 = RCATEGORIA)
) WITHOUT ROWID;
-- Accounts are looked up by item.
CREATE INDEX IF NOT EXISTS contaassociada_ritem ON contaassociada (RITEM);

-- A workstation's stays in the system.
CREATE TABLE IF NOT EXISTS sessaodeuso (
  OID      INTEGER  NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  INICIO   DATETIME CHECK (INICIO GLOB '[0-9]???-??-?? ??:??:??'),
  TERMINO  DATETIME CHECK (TERMINO GLOB '[0-9]???-??-?? ??:??:??'),
  SITUACAO SMALLINT CHECK (SITUACAO << 48 >> 48 = SITUACAO)
) WITHOUT ROWID;
-- Few sessions are open, and only open ones are looked for.
CREATE INDEX IF NOT EXISTS sessaodeuso_aberta ON sessaodeuso (SITUACAO) WHERE TERMINO IS NULL;

-- The applications opened in them.
CREATE TABLE IF NOT EXISTS sessaoaplicativo (
  OID          INTEGER      NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  RSESSAODEUSO INTEGER      CHECK (RSESSAODEUSO << 32 >> 32 = RSESSAODEUSO),
  RAPLICATIVO  INTEGER      CHECK (RAPLICATIVO << 32 >> 32 = RAPLICATIVO),
  RUSUARIO     INTEGER      CHECK (RUSUARIO << 32 >> 32 = RUSUARIO),
  ESTACAO      VARCHAR(100) COLLATE NOCASE CHECK (length(ESTACAO) <= 100),
  INICIO       DATETIME     CHECK (INICIO GLOB '[0-9]???-??-?? ??:??:??'),
  TERMINO      DATETIME     CHECK (TERMINO GLOB '[0-9]???-??-?? ??:??:??')
) WITHOUT ROWID;
-- From an open usage session to its applications.
CREATE INDEX IF NOT EXISTS sessaoaplicativo_rsessaodeuso ON sessaoaplicativo (RSESSAODEUSO);
-- Whether an application is open on a workstation.
CREATE INDEX IF NOT EXISTS sessaoaplicativo_aberta ON sessaoaplicativo (ESTACAO, RAPLICATIVO)
  WHERE TERMINO IS NULL;
