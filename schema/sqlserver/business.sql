-- The business tables: what hangs off an item, and the rows that belong to one, for SQL Server.
--
-- Nothing refers to anything by a foreign key: the component stores its rows one by one and takes
-- any OID for the item that a row belongs to. The indexes are those that the component's own
-- statements need, and pages that list what hangs off an item.
--
-- Running the script again changes nothing.

-- Definitions of additional data; RTIPO is the category that tells the kind of value.
IF OBJECT_ID(N'dadoadicional', N'U') IS NULL
CREATE TABLE dadoadicional (
  OID   INTEGER NOT NULL,
  RTIPO INTEGER,
  CONSTRAINT dadoadicional_chave PRIMARY KEY (OID)
)
GO
-- A parameter's definition is found by its category.
IF INDEXPROPERTY(OBJECT_ID(N'dadoadicional'), N'dadoadicional_rtipo', 'IndexID') IS NULL
CREATE INDEX dadoadicional_rtipo ON dadoadicional (RTIPO)
GO

-- Values of additional data: one of the four columns holds the value, the others are null.
IF OBJECT_ID(N'aditivo', N'U') IS NULL
CREATE TABLE aditivo (
  OID        INTEGER       NOT NULL,
  RITEM      INTEGER,
  RDEFINICAO INTEGER,
  SVALOR     NVARCHAR(255),
  NVALOR     FLOAT,
  DTVALOR    DATETIME,
  LSVALOR    NVARCHAR(MAX),
  CONSTRAINT aditivo_chave PRIMARY KEY (OID)
)
GO
-- Values are read and changed by item and definition.
IF INDEXPROPERTY(OBJECT_ID(N'aditivo'), N'aditivo_ritem', 'IndexID') IS NULL
CREATE INDEX aditivo_ritem ON aditivo (RITEM, RDEFINICAO)
GO

-- The tree of categories.
IF OBJECT_ID(N'categoria', N'U') IS NULL
CREATE TABLE categoria (
  OID         INTEGER       NOT NULL,
  RSUPER      INTEGER,
  NOMEINTERNO NVARCHAR(100),
  CONSTRAINT categoria_chave PRIMARY KEY (OID)
)
GO
-- Parameters are found by a category's internal name. Not unique: nobody promises that it is.
IF INDEXPROPERTY(OBJECT_ID(N'categoria'), N'categoria_nomeinterno', 'IndexID') IS NULL
CREATE INDEX categoria_nomeinterno ON categoria (NOMEINTERNO)
GO
-- Pages walk down the tree.
IF INDEXPROPERTY(OBJECT_ID(N'categoria'), N'categoria_rsuper', 'IndexID') IS NULL
CREATE INDEX categoria_rsuper ON categoria (RSUPER)
GO

-- Label texts of an application's controls.
IF OBJECT_ID(N'rotulo', N'U') IS NULL
CREATE TABLE rotulo (
  CONTROLE    NVARCHAR(100),
  VALOR       NVARCHAR(255),
  RAPLICATIVO INTEGER
)
GO
-- Labels are read by application.
IF INDEXPROPERTY(OBJECT_ID(N'rotulo'), N'rotulo_raplicativo', 'IndexID') IS NULL
CREATE INDEX rotulo_raplicativo ON rotulo (RAPLICATIVO)
GO

-- Puts an item into a group item in a role. Any number of times: nothing here is unique.
IF OBJECT_ID(N'agrupamento', N'U') IS NULL
CREATE TABLE agrupamento (
  OID    INTEGER NOT NULL,
  RPAPEL INTEGER,
  RGRUPO INTEGER,
  RITEM  INTEGER,
  CONSTRAINT agrupamento_chave PRIMARY KEY (OID)
)
GO
-- A contact's positions are removed by contact and company.
IF INDEXPROPERTY(OBJECT_ID(N'agrupamento'), N'agrupamento_ritem', 'IndexID') IS NULL
CREATE INDEX agrupamento_ritem ON agrupamento (RITEM, RGRUPO)
GO
-- Pages list a group's members.
IF INDEXPROPERTY(OBJECT_ID(N'agrupamento'), N'agrupamento_rgrupo', 'IndexID') IS NULL
CREATE INDEX agrupamento_rgrupo ON agrupamento (RGRUPO, RPAPEL)
GO

-- Puts an item into a category.
IF OBJECT_ID(N'classificacao', N'U') IS NULL
CREATE TABLE classificacao (
  OID        INTEGER NOT NULL,
  RITEM      INTEGER,
  RCATEGORIA INTEGER,
  CONSTRAINT classificacao_chave PRIMARY KEY (OID)
)
GO
-- Pages list an item's categories and a category's items.
IF INDEXPROPERTY(OBJECT_ID(N'classificacao'), N'classificacao_ritem', 'IndexID') IS NULL
CREATE INDEX classificacao_ritem ON classificacao (RITEM)
GO
IF INDEXPROPERTY(OBJECT_ID(N'classificacao'), N'classificacao_rcategoria', 'IndexID') IS NULL
CREATE INDEX classificacao_rcategoria ON classificacao (RCATEGORIA)
GO

-- Numbers handed out by sequences, one row a number. The key keeps apart two callers that race
-- for a number. OID is no key: the last OID of a range is handed out twice, and the component
-- takes
-- a refused row for a number that is taken, so with a key on OID it would try numbers for ever.
IF OBJECT_ID(N'chaveunica', N'U') IS NULL
CREATE TABLE chaveunica (
  OID       INTEGER       NOT NULL,
  DESCRICAO NVARCHAR(100) NOT NULL,
  CONSTRAINT chaveunica_chave PRIMARY KEY (DESCRICAO)
)
GO

-- Persons, by the OID of their item.
IF OBJECT_ID(N'pessoa', N'U') IS NULL
CREATE TABLE pessoa (
  OID           INTEGER       NOT NULL,
  RAZAOSOCIAL   NVARCHAR(255),
  IDENTIFICADOR NVARCHAR(50),
  CONSTRAINT pessoa_chave PRIMARY KEY (OID)
)
GO

-- Natural persons, by the OID of their item.
IF OBJECT_ID(N'pessoafisica', N'U') IS NULL
CREATE TABLE pessoafisica (
  OID INTEGER NOT NULL,
  CONSTRAINT pessoafisica_chave PRIMARY KEY (OID)
)
GO

-- Positions that a person can hold, by the OID of their item.
IF OBJECT_ID(N'cargo', N'U') IS NULL
CREATE TABLE cargo (
  OID INTEGER NOT NULL,
  CONSTRAINT cargo_chave PRIMARY KEY (OID)
)
GO

-- Addresses, by the OID of their item.
IF OBJECT_ID(N'endereco', N'U') IS NULL
CREATE TABLE endereco (
  OID         INTEGER       NOT NULL,
  RITEM       INTEGER,
  RCIDADE     INTEGER,
  CEP         NVARCHAR(20),
  BAIRRO      NVARCHAR(100),
  COMPLEMENTO NVARCHAR(100),
  NUMERO      NVARCHAR(20),
  RUA         NVARCHAR(255),
  REFERENCIA  NVARCHAR(255),
  CONSTRAINT endereco_chave PRIMARY KEY (OID)
)
GO
-- Pages list an item's addresses.
IF INDEXPROPERTY(OBJECT_ID(N'endereco'), N'endereco_ritem', 'IndexID') IS NULL
CREATE INDEX endereco_ritem ON endereco (RITEM)
GO

-- Ways of reaching an item.
IF OBJECT_ID(N'comunicacao', N'U') IS NULL
CREATE TABLE comunicacao (
  OID       INTEGER       NOT NULL,
  RITEM     INTEGER,
  RTIPO     INTEGER,
  RENDERECO INTEGER,
  VALOR     NVARCHAR(255),
  CONSTRAINT comunicacao_chave PRIMARY KEY (OID)
)
GO
-- Pages look for an item's telephone or e-mail by its kind.
IF INDEXPROPERTY(OBJECT_ID(N'comunicacao'), N'comunicacao_ritem', 'IndexID') IS NULL
CREATE INDEX comunicacao_ritem ON comunicacao (RITEM, RTIPO)
GO

-- Ledger accounts, by the OID of their item.
IF OBJECT_ID(N'contacontabil', N'U') IS NULL
CREATE TABLE contacontabil (
  OID              INTEGER      NOT NULL,
  HIERARQUIANUMERO NVARCHAR(50),
  CONSTRAINT contacontabil_chave PRIMARY KEY (OID)
)
GO

-- The ledger account of an item, by chart of accounts, value source and category.
IF OBJECT_ID(N'contaassociada', N'U') IS NULL
CREATE TABLE contaassociada (
  OID            INTEGER NOT NULL,
  RCONTACONTABIL INTEGER,
  RPLANODECONTAS INTEGER,
  RITEM          INTEGER,
  RFONTEDOVALOR  INTEGER,
  RCATEGORIA     INTEGER,
  CONSTRAINT contaassociada_chave PRIMARY KEY (OID)
)
GO
-- Accounts are looked up by item.
IF INDEXPROPERTY(OBJECT_ID(N'contaassociada'), N'contaassociada_ritem', 'IndexID') IS NULL
CREATE INDEX contaassociada_ritem ON contaassociada (RITEM)
GO

-- A workstation's stays in the system.
IF OBJECT_ID(N'sessaodeuso', N'U') IS NULL
CREATE TABLE sessaodeuso (
  OID      INTEGER  NOT NULL,
  INICIO   DATETIME,
  TERMINO  DATETIME,
  SITUACAO SMALLINT,
  CONSTRAINT sessaodeuso_chave PRIMARY KEY (OID)
)
GO
-- Few sessions are open, and only open ones are looked for.
IF INDEXPROPERTY(OBJECT_ID(N'sessaodeuso'), N'sessaodeuso_aberta', 'IndexID') IS NULL
CREATE INDEX sessaodeuso_aberta ON sessaodeuso (TERMINO, SITUACAO)
GO

-- The applications opened in them.
IF OBJECT_ID(N'sessaoaplicativo', N'U') IS NULL
CREATE TABLE sessaoaplicativo (
  OID          INTEGER       NOT NULL,
  RSESSAODEUSO INTEGER,
  RAPLICATIVO  INTEGER,
  RUSUARIO     INTEGER,
  ESTACAO      NVARCHAR(100),
  INICIO       DATETIME,
  TERMINO      DATETIME,
  CONSTRAINT sessaoaplicativo_chave PRIMARY KEY (OID)
)
GO
-- From an open usage session to its applications.
IF INDEXPROPERTY(OBJECT_ID(N'sessaoaplicativo'), N'sessaoaplicativo_rsessaodeuso', 'IndexID') IS NULL
CREATE INDEX sessaoaplicativo_rsessaodeuso ON sessaoaplicativo (RSESSAODEUSO)
GO
-- Whether an application is open on a workstation.
IF INDEXPROPERTY(OBJECT_ID(N'sessaoaplicativo'), N'sessaoaplicativo_aberta', 'IndexID') IS NULL
CREATE INDEX sessaoaplicativo_aberta ON sessaoaplicativo (ESTACAO, RAPLICATIVO, TERMINO)
GO
