-- The rows that the component cannot begin without, for MariaDB.
--
-- Running the script again changes nothing.
DELIMITER //

-- Delta 100: a thread asks the database for numbers once in a hundred new items, and a server that
-- is restarted leaves at most a hundred unused a thread. The first number given out is 100001:
-- numbers below are the application's own (classes, roles, categories, the reserved 7), which its
-- seed data names one by one; those known reach 12493.
INSERT INTO controlaoid (Delta, UltimoOID)
SELECT 100, 100000 FROM DUAL WHERE NOT EXISTS (SELECT 1 FROM controlaoid)
//
DELIMITER ;
