-- The application's menus, and who may use what, for Oracle.
--
-- Running the script again changes nothing.

-- Menu options, numbered by the engine; a number is never given twice. Keys up to 7 are reserved,
-- 7 being the root of the tree: the component does not delete them. So the first number given is
-- 8.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE Pelm_Menu (
  id              NUMBER(10)          NOT NULL,
  Nome            VARCHAR2(1000 CHAR),
  Link            VARCHAR2(2000 CHAR),
  rEscopo         NUMBER(10),
  rListadeObjetos NUMBER(10),
  Ordem           NUMBER(10),
  CONSTRAINT pelm_menu_chave PRIMARY KEY (id)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- A level is read in this order, and places are given by it.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX pelm_menu_ordem ON Pelm_Menu (rEscopo, Ordem, id)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/
-- The numbers of menu options. A session that asks for the last number given (@@identity) is
-- answered from the sequence that is named as the table with _ID behind it: keep the name.
BEGIN
  EXECUTE IMMEDIATE 'CREATE SEQUENCE Pelm_Menu_ID START WITH 8 INCREMENT BY 1 NOCYCLE';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/
CREATE OR REPLACE TRIGGER pelm_menu_numera BEFORE INSERT ON Pelm_Menu FOR EACH ROW
BEGIN
  IF :NEW.id IS NULL THEN
    SELECT Pelm_Menu_ID.NEXTVAL INTO :NEW.id FROM DUAL;
  END IF;
END;
/

-- Users, by the OID of their item.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE usuario (
  OID NUMBER(10) NOT NULL,
  CONSTRAINT usuario_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/

-- What a user, a group or everyone (item 1) may do with a list of objects: 0 is nothing.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE permissao (
  OID      NUMBER(10) NOT NULL,
  RUSUARIO NUMBER(10),
  RESCOPO  NUMBER(10),
  ACESSO   NUMBER(5),
  CONSTRAINT permissao_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
-- Permissions are asked for by holder and list.
BEGIN
  EXECUTE IMMEDIATE 'CREATE INDEX permissao_rusuario ON permissao (RUSUARIO, RESCOPO)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;
END;
/

-- Lists of objects, by the OID of their item, and the list that is a list's domain.
BEGIN
  EXECUTE IMMEDIATE '
CREATE TABLE listadeobjetos (
  OID      NUMBER(10) NOT NULL,
  RDOMINIO NUMBER(10),
  CONSTRAINT listadeobjetos_chave PRIMARY KEY (OID)
)';
EXCEPTION WHEN OTHERS THEN
  IF SQLCODE <> -955 THEN RAISE; END IF;  -- it is there already
END;
/
