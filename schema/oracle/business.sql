-- The business tables: what hangs off an item, and the rows that belong to one, for Oracle.
--
-- Nothing refers to anything by a foreign key: the component stores its rows one by one and takes
-- any OID for the item that a row belongs to. The indexes are those that the component's own
-- statements need, and pages that list what hangs off an item.
--
-- Running the script again changes nothing.

-- Definitions of additional data; RTIPO is the category that tells the kind of value.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE dadoadicional (
  OID   NUMBER(10) NOT NULL,
  RTIPO NUMBER(10),
  CONSTRAINT dadoadicional_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- A parameter's definition is found by its category.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX dadoadicional_rtipo ON dadoadicional (RTIPO)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/

-- Values of additional data: one of the four columns holds the value, the others are null.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE aditivo (
  OID        NUMBER(10)         NOT NULL,
  RITEM      NUMBER(10),
  RDEFINICAO NUMBER(10),
  SVALOR     VARCHAR2(255 CHAR),
  NVALOR     NUMBER,
  DTVALOR    DATE,
  LSVALOR    CLOB,
  CONSTRAINT aditivo_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- Values are read and changed by item and definition.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX aditivo_ritem ON aditivo (RITEM, RDEFINICAO)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/

-- The tree of categories.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE categoria (
  OID         NUMBER(10)         NOT NULL,
  RSUPER      NUMBER(10),
  NOMEINTERNO VARCHAR2(100 CHAR),
  CONSTRAINT categoria_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- Parameters are found by a category's internal name. Not unique: nobody promises that it is.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX categoria_nomeinterno ON categoria (NOMEINTERNO)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/
-- Pages walk down the tree.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX categoria_rsuper ON categoria (RSUPER)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/

-- Label texts of an application's controls.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE rotulo (
  CONTROLE    VARCHAR2(100 CHAR),
  VALOR       VARCHAR2(255 CHAR),
  RAPLICATIVO NUMBER(10)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- Labels are read by application.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX rotulo_raplicativo ON rotulo (RAPLICATIVO)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/

-- Puts an item into a group item in a role. Any number of times: nothing here is unique.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE agrupamento (
  OID    NUMBER(10) NOT NULL,
  RPAPEL NUMBER(10),
  RGRUPO NUMBER(10),
  RITEM  NUMBER(10),
  CONSTRAINT agrupamento_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- A contact's positions are removed by contact and company.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX agrupamento_ritem ON agrupamento (RITEM, RGRUPO)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/
-- Pages list a group's members.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX agrupamento_rgrupo ON agrupamento (RGRUPO, RPAPEL)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/

-- Puts an item into a category.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE classificacao (
  OID        NUMBER(10) NOT NULL,
  RITEM      NUMBER(10),
  RCATEGORIA NUMBER(10),
  CONSTRAINT classificacao_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- Pages list an item's categories and a category's items.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX classificacao_ritem ON classificacao (RITEM)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX classificacao_rcategoria ON classificacao (RCATEGORIA)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/

-- Numbers handed out by sequences, one row a number. The key keeps apart two callers that race
-- for a number. OID is no key: the last OID of a range is handed out twice, and the component
-- takes
-- a refused row for a number that is taken, so with a key on OID it would try numbers for ever.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE chaveunica (
  OID       NUMBER(10)         NOT NULL,
  DESCRICAO VARCHAR2(100 CHAR) NOT NULL,
  CONSTRAINT chaveunica_chave PRIMARY KEY (DESCRICAO)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/

-- Persons, by the OID of their item.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE pessoa (
  OID           NUMBER(10)         NOT NULL,
  RAZAOSOCIAL   VARCHAR2(255 CHAR),
  IDENTIFICADOR VARCHAR2(50 CHAR),
  CONSTRAINT pessoa_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/

-- Natural persons, by the OID of their item.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE pessoafisica (
  OID NUMBER(10) NOT NULL,
  CONSTRAINT pessoafisica_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/

-- Positions that a person can hold, by the OID of their item.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE cargo (
  OID NUMBER(10) NOT NULL,
  CONSTRAINT cargo_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/

-- Addresses, by the OID of their item.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE endereco (
  OID         NUMBER(10)         NOT NULL,
  RITEM       NUMBER(10),
  RCIDADE     NUMBER(10),
  CEP         VARCHAR2(20 CHAR),
  BAIRRO      VARCHAR2(100 CHAR),
  COMPLEMENTO VARCHAR2(100 CHAR),
  NUMERO      VARCHAR2(20 CHAR),
  RUA         VARCHAR2(255 CHAR),
  REFERENCIA  VARCHAR2(255 CHAR),
  CONSTRAINT endereco_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- Pages list an item's addresses.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX endereco_ritem ON endereco (RITEM)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/

-- Ways of reaching an item.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE comunicacao (
  OID       NUMBER(10)         NOT NULL,
  RITEM     NUMBER(10),
  RTIPO     NUMBER(10),
  RENDERECO NUMBER(10),
  VALOR     VARCHAR2(255 CHAR),
  CONSTRAINT comunicacao_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- Pages look for an item's telephone or e-mail by its kind.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX comunicacao_ritem ON comunicacao (RITEM, RTIPO)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/

-- Ledger accounts, by the OID of their item.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE contacontabil (
  OID              NUMBER(10)        NOT NULL,
  HIERARQUIANUMERO VARCHAR2(50 CHAR),
  CONSTRAINT contacontabil_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/

-- The ledger account of an item, by chart of accounts, value source and category.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE contaassociada (
  OID            NUMBER(10) NOT NULL,
  RCONTACONTABIL NUMBER(10),
  RPLANODECONTAS NUMBER(10),
  RITEM          NUMBER(10),
  RFONTEDOVALOR  NUMBER(10),
  RCATEGORIA     NUMBER(10),
  CONSTRAINT contaassociada_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- Accounts are looked up by item.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX contaassociada_ritem ON contaassociada (RITEM)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/

-- A workstation's stays in the system.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE sessaodeuso (
  OID      NUMBER(10) NOT NULL,
  INICIO   DATE,
  TERMINO  DATE,
  SITUACAO NUMBER(5),
  CONSTRAINT sessaodeuso_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- Few sessions are open, and only open ones are looked for.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX sessaodeuso_aberta ON sessaodeuso (TERMINO, SITUACAO)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/

-- The applications opened in them.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE sessaoaplicativo (
  OID          NUMBER(10)         NOT NULL,
  RSESSAODEUSO NUMBER(10),
  RAPLICATIVO  NUMBER(10),
  RUSUARIO     NUMBER(10),
  ESTACAO      VARCHAR2(100 CHAR),
  INICIO       DATE,
  TERMINO      DATE,
  CONSTRAINT sessaoaplicativo_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- From an open usage session to its applications.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX sessaoaplicativo_rsessaodeuso ON sessaoaplicativo (RSESSAODEUSO)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/
-- Whether an application is open on a workstation.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX sessaoaplicativo_aberta ON sessaoaplicativo (ESTACAO, RAPLICATIVO, TERMINO)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/
