"""The databases of the tests: SQLite in a file, and a PostgreSQL server of the test's own."""
import contextlib
import csv
import io
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

SCRIPTS = Path(__file__).resolve().parents[2] / "database"
POSTGRES = max(Path("/usr/lib/postgresql").glob("*/bin"))  # one version, the release's


def run(*command, **options):
    done = subprocess.run([str(part) for part in command], capture_output=True, check=False, **options)
    assert done.returncode == 0, f"{command}: {done.stderr.decode('utf-8')}"
    assert not done.stderr, done.stderr.decode("utf-8")
    return done.stdout.decode("utf-8")


class Database:
    """Runs the documented commands."""

    def load(self, export, codes):
        """Loads an export, as docs/database.md shows, and the codes of the catalogue. Returns what the load prints."""
        return self.run_files(export, SCRIPTS / self.name / "schema.sql", SCRIPTS / self.name / "load.sql", codes)

    def query(self, name):
        return self.select_file(SCRIPTS / "queries" / f"{name}.sql")

    def contents(self):
        """All rows of all tables."""
        return {table: sorted(self.select(f"SELECT * FROM {table}")) for table in
                ("jobs", "copy_lines", "policy_violations", "logical_printers", "paper_sizes", "page_attributes",
                 "finishing_options", "languages", "prices")}


class Sqlite(Database):
    name = "sqlite"

    def __init__(self, path):
        self.path = Path(path).resolve()
        self.path.unlink(missing_ok=True)

    def run_files(self, folder, *files):
        return run("sqlite3", self.path, *(f'.read "{file}"' for file in files), cwd=folder)

    def select(self, text):
        return list(csv.reader(io.StringIO(run("sqlite3", "-csv", self.path, text))))

    def select_file(self, path):
        return self.select(f'.read "{path}"')


class Postgres(Database):
    name = "postgresql"

    def __init__(self, socket):
        self.psql = [POSTGRES / "psql", "--host", socket, "--username", "postgres", "--dbname", "postgres", "--no-psqlrc",
                     "--quiet", "--set", "ON_ERROR_STOP=on"]

    def run_files(self, folder, *files):
        options = [part for file in files for part in ("--file", file)]
        return run(*self.psql, "--tuples-only", *options, cwd=folder, env={**os.environ, "PGOPTIONS": "-c client_min_messages=warning"})

    def select(self, text):
        return list(csv.reader(io.StringIO(run(*self.psql, "--csv", "--tuples-only", "--command", text))))

    def select_file(self, path):
        return list(csv.reader(io.StringIO(run(*self.psql, "--csv", "--tuples-only", "--file", path))))


@contextlib.contextmanager
def postgres_server():
    """A server on a local socket, in a folder for temporary files: its account cannot read every build folder, and the
    path of a socket is limited to 107 bytes."""
    folder = Path(tempfile.mkdtemp(prefix="jobs-"))
    # The server refuses to run as root.
    as_account = ["runuser", "-u", "postgres", "--"] if os.getuid() == 0 else []
    if as_account:
        shutil.chown(folder, "postgres")
    data = folder / "data"
    server = [*as_account, POSTGRES / "pg_ctl", "--pgdata", data, "--wait", "--log", folder / "log"]
    try:
        run(*as_account, POSTGRES / "initdb", "--pgdata", data, "--username", "postgres", "--auth", "trust",
            "--encoding", "UTF8", "--locale", "C", "--no-sync", cwd=folder)
        run(*server, "--options", f"-c listen_addresses='' -k {folder} -c fsync=off", "start", cwd=folder)
        try:
            yield Postgres(folder)
        finally:
            run(*server, "--mode", "immediate", "stop", cwd=folder)
    finally:
        shutil.rmtree(folder)
