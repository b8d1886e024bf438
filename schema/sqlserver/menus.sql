-- The application's menus, and who may use what, for SQL Server.
--
-- Running the script again changes nothing.

-- Menu options, numbered by the engine; a number is never given twice. Keys up to 7 are reserved,
-- 7 being the root of the tree: the component does not delete them. So the first number given is
-- 8.
IF OBJECT_ID(N'Pelm_Menu', N'U') IS NULL
CREATE TABLE Pelm_Menu (
  id              INTEGER IDENTITY(8, 1) NOT NULL,
  Nome            NVARCHAR(1000),
  Link            NVARCHAR(2000),
  rEscopo         INTEGER,
  rListadeObjetos INTEGER,
  Ordem           INTEGER,
  CONSTRAINT pelm_menu_chave PRIMARY KEY (id)
)
GO
-- A level is read in this order, and places are given by it.
IF INDEXPROPERTY(OBJECT_ID(N'Pelm_Menu'), N'pelm_menu_ordem', 'IndexID') IS NULL
CREATE INDEX pelm_menu_ordem ON Pelm_Menu (rEscopo, Ordem, id)
GO

-- Users, by the OID of their item.
IF OBJECT_ID(N'usuario', N'U') IS NULL
CREATE TABLE usuario (
  OID INTEGER NOT NULL,
  CONSTRAINT usuario_chave PRIMARY KEY (OID)
)
GO

-- What a user, a group or everyone (item 1) may do with a list of objects: 0 is nothing.
IF OBJECT_ID(N'permissao', N'U') IS NULL
CREATE TABLE permissao (
  OID      INTEGER  NOT NULL,
  RUSUARIO INTEGER,
  RESCOPO  INTEGER,
  ACESSO   SMALLINT,
  CONSTRAINT permissao_chave PRIMARY KEY (OID)
)
GO
-- Permissions are asked for by holder and list.
IF INDEXPROPERTY(OBJECT_ID(N'permissao'), N'permissao_rusuario', 'IndexID') IS NULL
CREATE INDEX permissao_rusuario ON permissao (RUSUARIO, RESCOPO)
GO

-- Lists of objects, by the OID of their item, and the list that is a list's domain.
IF OBJECT_ID(N'listadeobjetos', N'U') IS NULL
CREATE TABLE listadeobjetos (
  OID      INTEGER NOT NULL,
  RDOMINIO INTEGER,
  CONSTRAINT listadeobjetos_chave PRIMARY KEY (OID)
)
GO
