-- The tables that hang off items: values, groupings, people, addresses, accounts, sessions.
--
-- Nothing refers to anything by a foreign key: the component stores its rows one by one and takes
-- any OID for the item that a row belongs to. What a column may hold is checked here, so that no
-- statement of a page can store a value that reads back as another type.

-- Definitions of additional data; RTIPO is the category that says which kind of value it is.
CREATE TABLE dadoadicional (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647),
  RTIPO INTEGER CHECK (RTIPO BETWEEN -2147483648 AND 2147483647 AND typeof(RTIPO) <> 'real')
);
-- A parameter's definition is found by its category.
CREATE INDEX dadoadicional_rtipo ON dadoadicional (RTIPO);

-- Values of additional data: one of the four columns holds it, the others are null.
CREATE TABLE aditivo (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647),
  RITEM INTEGER CHECK (RITEM BETWEEN -2147483648 AND 2147483647 AND typeof(RITEM) <> 'real'),
  RDEFINICAO INTEGER
    CHECK (RDEFINICAO BETWEEN -2147483648 AND 2147483647 AND typeof(RDEFINICAO) <> 'real'),
  SVALOR VARCHAR(255) CHECK (length(SVALOR) <= 255 AND typeof(SVALOR) <> 'blob'),
  NVALOR NUMERIC CHECK (typeof(NVALOR) NOT IN ('text', 'blob')),
  DTVALOR DATETIME CHECK (DTVALOR = datetime(DTVALOR, '+0 days')),
  LSVALOR TEXT CHECK (typeof(LSVALOR) <> 'blob')
);
-- Values are read and changed by item and definition.
CREATE INDEX aditivo_ritem ON aditivo (RITEM, RDEFINICAO);

-- The tree of categories.
CREATE TABLE categoria (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647),
  RSUPER INTEGER CHECK (RSUPER BETWEEN -2147483648 AND 2147483647 AND typeof(RSUPER) <> 'real'),
  NOMEINTERNO VARCHAR(100) CHECK (length(NOMEINTERNO) <= 100 AND typeof(NOMEINTERNO) <> 'blob')
);
-- Parameters are found by the internal name of a category. Not unique: nobody checks it.
CREATE INDEX categoria_nomeinterno ON categoria (NOMEINTERNO);
-- Pages walk down the tree.
CREATE INDEX categoria_rsuper ON categoria (RSUPER);

-- Label texts of an application's controls.
CREATE TABLE rotulo (
  CONTROLE VARCHAR(100) CHECK (length(CONTROLE) <= 100 AND typeof(CONTROLE) <> 'blob'),
  VALOR VARCHAR(255) CHECK (length(VALOR) <= 255 AND typeof(VALOR) <> 'blob'),
  RAPLICATIVO INTEGER
    CHECK (RAPLICATIVO BETWEEN -2147483648 AND 2147483647 AND typeof(RAPLICATIVO) <> 'real')
);
-- Labels are read by application.
CREATE INDEX rotulo_raplicativo ON rotulo (RAPLICATIVO);

-- Puts an item into a group item in a role.
CREATE TABLE agrupamento (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647),
  RPAPEL INTEGER CHECK (RPAPEL BETWEEN -2147483648 AND 2147483647 AND typeof(RPAPEL) <> 'real'),
  RGRUPO INTEGER CHECK (RGRUPO BETWEEN -2147483648 AND 2147483647 AND typeof(RGRUPO) <> 'real'),
  RITEM INTEGER CHECK (RITEM BETWEEN -2147483648 AND 2147483647 AND typeof(RITEM) <> 'real')
);
-- A contact's positions are removed by contact and company.
CREATE INDEX agrupamento_ritem ON agrupamento (RITEM, RGRUPO);
-- Pages list the members of a group.
CREATE INDEX agrupamento_rgrupo ON agrupamento (RGRUPO, RPAPEL);

-- Puts an item into a category.
CREATE TABLE classificacao (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647),
  RITEM INTEGER CHECK (RITEM BETWEEN -2147483648 AND 2147483647 AND typeof(RITEM) <> 'real'),
  RCATEGORIA INTEGER
    CHECK (RCATEGORIA BETWEEN -2147483648 AND 2147483647 AND typeof(RCATEGORIA) <> 'real')
);
-- Pages list the categories of an item, and the items of a category.
CREATE INDEX classificacao_ritem ON classificacao (RITEM);
CREATE INDEX classificacao_rcategoria ON classificacao (RCATEGORIA);

-- Numbers handed out by sequences, one row a number. The key of the text keeps two callers that
-- race for a number apart. OID is no key here: the last OID of a range is handed out twice, and to
-- the component a refused row means that its number is taken, so it would try numbers for ever.
CREATE TABLE chaveunica (
  OID INTEGER NOT NULL CHECK (OID BETWEEN -2147483648 AND 2147483647 AND typeof(OID) <> 'real'),
  DESCRICAO VARCHAR(100) NOT NULL
    CHECK (length(DESCRICAO) <= 100 AND typeof(DESCRICAO) <> 'blob') UNIQUE
);

-- Persons: an item's row by its OID.
CREATE TABLE pessoa (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647),
  RAZAOSOCIAL VARCHAR(255) CHECK (length(RAZAOSOCIAL) <= 255 AND typeof(RAZAOSOCIAL) <> 'blob'),
  IDENTIFICADOR VARCHAR(50) CHECK (length(IDENTIFICADOR) <= 50 AND typeof(IDENTIFICADOR) <> 'blob')
);

-- Natural persons.
CREATE TABLE pessoafisica (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647)
);

-- Positions that a person can hold.
CREATE TABLE cargo (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647)
);

-- Addresses: items with a row of their own.
CREATE TABLE endereco (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647),
  RITEM INTEGER CHECK (RITEM BETWEEN -2147483648 AND 2147483647 AND typeof(RITEM) <> 'real'),
  RCIDADE INTEGER CHECK (RCIDADE BETWEEN -2147483648 AND 2147483647 AND typeof(RCIDADE) <> 'real'),
  CEP VARCHAR(20) CHECK (length(CEP) <= 20 AND typeof(CEP) <> 'blob'),
  BAIRRO VARCHAR(100) CHECK (length(BAIRRO) <= 100 AND typeof(BAIRRO) <> 'blob'),
  COMPLEMENTO VARCHAR(100) CHECK (length(COMPLEMENTO) <= 100 AND typeof(COMPLEMENTO) <> 'blob'),
  NUMERO VARCHAR(20) CHECK (length(NUMERO) <= 20 AND typeof(NUMERO) <> 'blob'),
  RUA VARCHAR(255) CHECK (length(RUA) <= 255 AND typeof(RUA) <> 'blob'),
  REFERENCIA VARCHAR(255) CHECK (length(REFERENCIA) <= 255 AND typeof(REFERENCIA) <> 'blob')
);
-- Pages list the addresses of an item.
CREATE INDEX endereco_ritem ON endereco (RITEM);

-- Ways of reaching an item.
CREATE TABLE comunicacao (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647),
  RITEM INTEGER CHECK (RITEM BETWEEN -2147483648 AND 2147483647 AND typeof(RITEM) <> 'real'),
  RTIPO INTEGER CHECK (RTIPO BETWEEN -2147483648 AND 2147483647 AND typeof(RTIPO) <> 'real'),
  RENDERECO INTEGER
    CHECK (RENDERECO BETWEEN -2147483648 AND 2147483647 AND typeof(RENDERECO) <> 'real'),
  VALOR VARCHAR(255) CHECK (length(VALOR) <= 255 AND typeof(VALOR) <> 'blob')
);
-- Pages read an item's telephone or e-mail by its kind.
CREATE INDEX comunicacao_ritem ON comunicacao (RITEM, RTIPO);

-- Ledger accounts.
CREATE TABLE contacontabil (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647),
  HIERARQUIANUMERO VARCHAR(50)
    CHECK (length(HIERARQUIANUMERO) <= 50 AND typeof(HIERARQUIANUMERO) <> 'blob')
);

-- The ledger account of an item, by chart of accounts, value source and category.
CREATE TABLE contaassociada (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647),
  RCONTACONTABIL INTEGER
    CHECK (RCONTACONTABIL BETWEEN -2147483648 AND 2147483647 AND typeof(RCONTACONTABIL) <> 'real'),
  RPLANODECONTAS INTEGER
    CHECK (RPLANODECONTAS BETWEEN -2147483648 AND 2147483647 AND typeof(RPLANODECONTAS) <> 'real'),
  RITEM INTEGER CHECK (RITEM BETWEEN -2147483648 AND 2147483647 AND typeof(RITEM) <> 'real'),
  RFONTEDOVALOR INTEGER
    CHECK (RFONTEDOVALOR BETWEEN -2147483648 AND 2147483647 AND typeof(RFONTEDOVALOR) <> 'real'),
  RCATEGORIA INTEGER
    CHECK (RCATEGORIA BETWEEN -2147483648 AND 2147483647 AND typeof(RCATEGORIA) <> 'real')
);
-- Accounts are looked up by item.
CREATE INDEX contaassociada_ritem ON contaassociada (RITEM);

-- A workstation's stays in the system.
CREATE TABLE sessaodeuso (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647),
  INICIO DATETIME CHECK (INICIO = datetime(INICIO, '+0 days')),
  TERMINO DATETIME CHECK (TERMINO = datetime(TERMINO, '+0 days')),
  SITUACAO SMALLINT CHECK (SITUACAO BETWEEN -32768 AND 32767 AND typeof(SITUACAO) <> 'real')
);
-- Few sessions are open, and only open ones are looked for.
CREATE INDEX sessaodeuso_aberta ON sessaodeuso (SITUACAO) WHERE TERMINO IS NULL;

-- The applications opened in them.
CREATE TABLE sessaoaplicativo (
  OID INTEGER NOT NULL PRIMARY KEY CHECK (OID BETWEEN -2147483648 AND 2147483647),
  RSESSAODEUSO INTEGER
    CHECK (RSESSAODEUSO BETWEEN -2147483648 AND 2147483647 AND typeof(RSESSAODEUSO) <> 'real'),
  RAPLICATIVO INTEGER
    CHECK (RAPLICATIVO BETWEEN -2147483648 AND 2147483647 AND typeof(RAPLICATIVO) <> 'real'),
  RUSUARIO INTEGER
    CHECK (RUSUARIO BETWEEN -2147483648 AND 2147483647 AND typeof(RUSUARIO) <> 'real'),
  ESTACAO VARCHAR(100) CHECK (length(ESTACAO) <= 100 AND typeof(ESTACAO) <> 'blob'),
  INICIO DATETIME CHECK (INICIO = datetime(INICIO, '+0 days')),
  TERMINO DATETIME CHECK (TERMINO = datetime(TERMINO, '+0 days'))
);
-- From an open usage session to its applications.
CREATE INDEX sessaoaplicativo_rsessaodeuso ON sessaoaplicativo (RSESSAODEUSO);
-- Is this application open on this workstation?
CREATE INDEX sessaoaplicativo_aberta ON sessaoaplicativo (ESTACAO, RAPLICATIVO)
  WHERE TERMINO IS NULL;
