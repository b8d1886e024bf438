-- The component's tables, for SQL Server.
--
-- For the administrator: run the files of this folder in the database of the application, in the
-- order tables, business, menus, views, procedures, first_rows (`pelm schema sqlserver` prints
-- them so, for sqlcmd). SQL Server 2005 or later. Names and texts must compare without case: a
-- database with a collation whose name says CI, Latin1_General_CI_AS for one. Nothing here drops
-- or changes what is there.
--
-- Running the script again changes nothing.

-- Every record of the application is an item.
IF OBJECT_ID(N'item', N'U') IS NULL
CREATE TABLE item (
  OID           INTEGER        NOT NULL,
  CID           INTEGER        NOT NULL,
  NOME          NVARCHAR(255),
  CODIGO        NVARCHAR(50),
  RESCOPO       INTEGER,
  CRIADOPOR     INTEGER,
  CRIADOEM      DATETIME,
  ATUALIZADOPOR INTEGER,
  ATUALIZADOEM  DATETIME,
  OBSERVACAO    NVARCHAR(4000),
  EXCLUIDO      SMALLINT,
  CONSTRAINT item_chave PRIMARY KEY (OID)
)
GO

-- The recycle bin. One item may be in it several times, so its OID is no key here.
IF OBJECT_ID(N'excluido', N'U') IS NULL
CREATE TABLE excluido (
  OID         INTEGER       NOT NULL,
  CID         INTEGER,
  NOME        NVARCHAR(255),
  CODIGO      NVARCHAR(50),
  EXCLUIDOPOR INTEGER,
  EXCLUIDOEM  DATETIME,
  RAPLICATIVO INTEGER
)
GO
IF INDEXPROPERTY(OBJECT_ID(N'excluido'), N'excluido_oid', 'IndexID') IS NULL
CREATE INDEX excluido_oid ON excluido (OID)
GO

-- The counter of OIDs: one row. A range of Delta numbers is reserved at a time.
IF OBJECT_ID(N'controlaoid', N'U') IS NULL
CREATE TABLE controlaoid (
  Delta     SMALLINT NOT NULL CHECK (Delta > 0),
  UltimoOID INTEGER  NOT NULL
)
GO
