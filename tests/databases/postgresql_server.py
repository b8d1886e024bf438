# A PostgreSQL server of the tests' own, with the functions that Oracle has; reached by a socket.
import glob
import os
import pwd
import signal
import subprocess

from temporary_server import TemporaryServer

PROGRAMS = sorted(glob.glob("/usr/lib/postgresql/*/bin"))
OWNER = "postgres"  # the server refuses to run as root
PORT = 5432  # names the socket
# Oracle's functions, and numbers for truth values, which statements of pages write.
TEMPLATE = f"""
create database pelm_template;
alter role {OWNER} set search_path = public, oracle, pg_catalog;
\\connect pelm_template
create extension orafce;
update pg_cast set castcontext = 'a' where castsource = 'integer'::regtype and casttarget = 'boolean'::regtype;
"""


class Server(TemporaryServer):
    variable = "PELM_TEST_POSTGRESQL"
    end_signal = signal.SIGQUIT  # "immediate": nothing is kept

    @property
    def address(self):
        return self.folder

    @property
    def as_owner(self):
        return {"user": OWNER, "group": pwd.getpwnam(OWNER).pw_gid, "extra_groups": []} if os.getuid() == 0 else {}

    @staticmethod
    def program(name):
        return os.path.join(PROGRAMS[-1], name) if PROGRAMS else name

    def install(self):
        if os.getuid() == 0:
            owner = pwd.getpwnam(OWNER)
            os.chown(self.folder, owner.pw_uid, owner.pw_gid)
        self.checked([self.program("initdb"), "--auth=trust", f"--username={OWNER}", "--encoding=UTF8",
                      "--locale=C.UTF-8", "--no-sync", f"--pgdata={self.folder}/data"], cwd=self.folder, **self.as_owner)

    def start(self):
        settings = {"listen_addresses": "", "unix_socket_directories": self.folder, "port": PORT, "fsync": "off",
                    "full_page_writes": "off", "synchronous_commit": "off", "shared_buffers": "32MB"}
        self.launch([self.program("postgres"), "-D", f"{self.folder}/data",
                     *(word for name, value in settings.items() for word in ("-c", f"{name}={value}"))],
                    cwd=self.folder, **self.as_owner)
        self.psql(TEMPLATE)

    def answers(self):
        return self.psql("select 1", check=False).returncode == 0

    def psql(self, sql, check=True):
        return subprocess.run([self.program("psql"), "--no-psqlrc", "--quiet", "--set=ON_ERROR_STOP=1",
                               f"--host={self.folder}", f"--port={PORT}", f"--username={OWNER}", "postgres"],
                              input=sql, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=check)
