-- The component's stored procedures, for the embedded engine (SQLite).
--
-- Running the script again puts them back as they stand here.

-- Reserves the next Delta OIDs and tells the last of them. Both statements are one transaction: no
-- other process can reserve the same numbers.
INSERT INTO pelm_procedure (name, parameters, script)
VALUES ('atualoid', '@novooid INTEGER OUTPUT',
        'UPDATE controlaoid SET UltimoOID = UltimoOID + Delta;
SELECT UltimoOID AS novooid FROM controlaoid')
ON CONFLICT (name) DO UPDATE SET parameters = excluded.parameters, script = excluded.script;
