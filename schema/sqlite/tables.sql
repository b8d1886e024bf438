-- The component's tables, for the embedded engine (SQLite).
--
-- Names are those that the component writes; the engine compares them without case. The engine
-- keeps any value in any column, so each column has a CHECK, and a wrong type is refused here
-- instead of being found years later. A null passes each of them:
--   x << 32 >> 32 = x   whole numbers of 32 bits only
--   x << 48 >> 48 = x   whole numbers of 16 bits only
--   x GLOB '[0-9]???-??-?? ??:??:??'   dates, kept as texts that compare as the dates do
--   length(x) <= n      texts of n characters at most
--
-- Texts compare without case. In tables that `pelm` makes from this script they do so for accented
-- letters too (the collation PELM, which only `pelm` knows): to compare or sort such a column with
-- another tool, write COLLATE NOCASE in the query.
--
-- Running the script again changes nothing.

-- Every record of the application is an item. WITHOUT ROWID: rows are kept in the order of their
-- key, a row without an OID is refused instead of being given one, and the last number that the
-- engine gave out (@@identity) stays that of the tables whose rows it numbers.
CREATE TABLE IF NOT EXISTS item (
  OID           INTEGER       NOT NULL PRIMARY KEY CHECK (OID << 32 >> 32 = OID),
  CID           INTEGER       NOT NULL CHECK (CID << 32 >> 32 = CID),
  NOME          VARCHAR(255)  COLLATE NOCASE CHECK (length(NOME) <= 255),
  CODIGO        VARCHAR(50)   COLLATE NOCASE CHECK (length(CODIGO) <= 50),
  RESCOPO       INTEGER       CHECK (RESCOPO << 32 >> 32 = RESCOPO),
  CRIADOPOR     INTEGER       CHECK (CRIADOPOR << 32 >> 32 = CRIADOPOR),
  CRIADOEM      DATETIME      CHECK (CRIADOEM GLOB '[0-9]???-??-?? ??:??:??'),
  ATUALIZADOPOR INTEGER       CHECK (ATUALIZADOPOR << 32 >> 32 = ATUALIZADOPOR),
  ATUALIZADOEM  DATETIME      CHECK (ATUALIZADOEM GLOB '[0-9]???-??-?? ??:??:??'),
  OBSERVACAO    VARCHAR(4000) COLLATE NOCASE CHECK (length(OBSERVACAO) <= 4000),
  EXCLUIDO      SMALLINT      CHECK (EXCLUIDO << 48 >> 48 = EXCLUIDO)
) WITHOUT ROWID;

-- The recycle bin. One item may be in it several times, so its OID is no key here.
CREATE TABLE IF NOT EXISTS excluido (
  OID         INTEGER      NOT NULL CHECK (OID << 32 >> 32 = OID),
  CID         INTEGER      CHECK (CID << 32 >> 32 = CID),
  NOME        VARCHAR(255) COLLATE NOCASE CHECK (length(NOME) <= 255),
  CODIGO      VARCHAR(50)  COLLATE NOCASE CHECK (length(CODIGO) <= 50),
  EXCLUIDOPOR INTEGER      CHECK (EXCLUIDOPOR << 32 >> 32 = EXCLUIDOPOR),
  EXCLUIDOEM  DATETIME     CHECK (EXCLUIDOEM GLOB '[0-9]???-??-?? ??:??:??'),
  RAPLICATIVO INTEGER      CHECK (RAPLICATIVO << 32 >> 32 = RAPLICATIVO)
);
CREATE INDEX IF NOT EXISTS excluido_oid ON excluido (OID);

-- The counter of OIDs: one row. A range of Delta numbers is reserved at a time.
CREATE TABLE IF NOT EXISTS controlaoid (
  Delta     SMALLINT NOT NULL CHECK (Delta << 48 >> 48 = Delta AND Delta > 0),
  UltimoOID INTEGER  NOT NULL CHECK (UltimoOID << 32 >> 32 = UltimoOID)
);

-- The stored procedures: scripts of statements parted by ";". `parameters` declares them as the
-- head of a procedure does: "@a INTEGER, @b VARCHAR(50), @c INTEGER OUTPUT". In the script @a is
-- the value given; @c takes the value of the result column named c.
CREATE TABLE IF NOT EXISTS pelm_procedure (
  name       VARCHAR(128) COLLATE NOCASE NOT NULL PRIMARY KEY CHECK (length(name) BETWEEN 1 AND 128),
  parameters TEXT         COLLATE NOCASE NOT NULL DEFAULT '',
  script     TEXT         COLLATE NOCASE NOT NULL
) WITHOUT ROWID;
