# An H2 server of the tests' own, read as SQL Server: reached through the stock PostgreSQL driver and
# the relay before it, on a port of loopback. Its databases are in memory.
import re

import h2_relay
from temporary_server import TemporaryServer

JAR = "/usr/share/java/h2.jar"


class Server(TemporaryServer):
    variable = "PELM_TEST_H2"
    relay = None

    @property
    def address(self):
        return str(self.relay.port)

    def start(self):
        # Quick to begin rather than quick in the end: most of a run is the first minute. Without its
        # figures for other programs, whose folder would stay in /tmp.
        self.launch(["java", "-XX:TieredStopAtLevel=1", "-XX:+UseSerialGC", "-XX:-UsePerfData", "-Xshare:auto",
                     "-Xmx512m", "-cp", JAR, "org.h2.tools.Server", "-pg", "-pgPort", "0", "-baseDir", self.folder,
                     "-ifNotExists"])
        self.relay = h2_relay.Relay(self.port())

    def port(self):
        found = re.search(r"pg://[^:]*:(\d+)", self.log())
        return int(found[1]) if found else 0

    def answers(self):
        return self.port() != 0

    def stop(self):
        if self.relay is not None:
            self.relay.close()
            self.relay = None
        super().stop()
