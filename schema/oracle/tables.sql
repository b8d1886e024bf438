-- The component's tables, for Oracle.
--
-- For the administrator: run the files of this folder as the owner of the application's objects,
-- in the order tables, business, menus, views, functions, procedures, first_rows (`pelm schema
-- oracle` prints them so, for SQL*Plus). Oracle 10g or later. The empty text is null here, and
-- texts compare with case unless the sessions set NLS_COMP = LINGUISTIC and NLS_SORT = BINARY_CI.
-- Nothing here drops or changes what is there.
--
-- Running the script again changes nothing.

-- Every record of the application is an item.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE item (
  OID           NUMBER(10)          NOT NULL,
  CID           NUMBER(10)          NOT NULL,
  NOME          VARCHAR2(255 CHAR),
  CODIGO        VARCHAR2(50 CHAR),
  RESCOPO       NUMBER(10),
  CRIADOPOR     NUMBER(10),
  CRIADOEM      DATE,
  ATUALIZADOPOR NUMBER(10),
  ATUALIZADOEM  DATE,
  OBSERVACAO    VARCHAR2(4000 CHAR),
  EXCLUIDO      NUMBER(5),
  CONSTRAINT item_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/

-- The recycle bin. One item may be in it several times, so its OID is no key here.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE excluido (
  OID         NUMBER(10)         NOT NULL,
  CID         NUMBER(10),
  NOME        VARCHAR2(255 CHAR),
  CODIGO      VARCHAR2(50 CHAR),
  EXCLUIDOPOR NUMBER(10),
  EXCLUIDOEM  DATE,
  RAPLICATIVO NUMBER(10)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX excluido_oid ON excluido (OID)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/

-- The counter of OIDs: one row. A range of Delta numbers is reserved at a time.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE controlaoid (
  Delta     NUMBER(5)  NOT NULL CHECK (Delta > 0),
  UltimoOID NUMBER(10) NOT NULL
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
