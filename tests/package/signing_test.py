#!/usr/bin/env python3
"""Signs a copy of a release with a certificate made for the test and a time stamp of a local authority, and verifies it:

    signing_test.py <release folder> <work folder> <argument of release_test.py after the release folder>...
"""

import http.server
import shutil
import subprocess
import sys
import threading
import zipfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
SIGN = HERE.parents[1] / "packaging" / "sign_release.py"
AUTHORITY = """[tsa]
default_tsa = authority
[authority]
serial = {folder}/serial
signer_cert = {folder}/authority.pem
signer_key = {folder}/authority.key
signer_digest = sha256
default_policy = 1.2.3.4.1
digests = sha256
"""


def check(what, condition, seen=""):
    if not condition:
        raise SystemExit(f"FAILED: {what} {seen}")
    print("ok: " + what, flush=True)


def run(*command, expected=0):
    result = subprocess.run(command, capture_output=True, text=True)
    if expected is not None and result.returncode != expected:
        raise SystemExit(f"{' '.join(map(str, command))} returned {result.returncode}\n{result.stdout}{result.stderr}")
    return result


def make_certificate(folder, name, usage):
    """A self-signed certificate: <name>.pem and <name>.key."""
    run("openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", f"/CN={name}",
        "-addext", f"extendedKeyUsage=critical,{usage}", "-keyout", folder / f"{name}.key", "-out", folder / f"{name}.pem")


def make_certificates(folder):
    make_certificate(folder, "publisher", "codeSigning")
    make_certificate(folder, "authority", "timeStamping")
    (folder / "password").write_text("a test's password\n", encoding="ascii")
    (folder / "wrong_password").write_text("another\n", encoding="ascii")
    run("openssl", "pkcs12", "-export", "-inkey", folder / "publisher.key", "-in", folder / "publisher.pem",
        "-out", folder / "publisher.p12", "-passout", f"file:{folder / 'password'}")


class Authority:
    """A time stamping authority at a local address, while the with statement runs."""

    def __init__(self, folder):
        (folder / "authority.cnf").write_text(AUTHORITY.format(folder=folder), encoding="ascii")
        (folder / "serial").write_text("01\n", encoding="ascii")

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_POST(self):
                query, reply = folder / "query", folder / "reply"
                query.write_bytes(self.rfile.read(int(self.headers["Content-Length"])))
                run("openssl", "ts", "-reply", "-config", folder / "authority.cnf", "-queryfile", query, "-out", reply)
                self.send_response(200)
                self.send_header("Content-Type", "application/timestamp-reply")
                self.end_headers()
                self.wfile.write(reply.read_bytes())

            def log_message(self, *_):
                pass

        self.server = http.server.HTTPServer(("127.0.0.1", 0), Handler)
        self.url = f"http://127.0.0.1:{self.server.server_port}/"

    def __enter__(self):
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.server.shutdown()
        self.server.server_close()


class Verifier:
    def __init__(self, folder):
        self.folder = folder

    def accepts(self, path):
        result = run("osslsigncode", "verify", "-in", path, "-CAfile", self.folder / "publisher.pem",
                     "-TSA-CAfile", self.folder / "authority.pem", expected=None)
        return result.returncode == 0 and "Timestamp Server Signature verification: ok" in result.stdout

    def check_signed(self, path):
        check(f"{path.name} is signed and has a time stamp", self.accepts(path))

    def check_tampered(self, path):
        """A copy with one changed byte, in the middle of the content, is refused."""
        copy = self.folder / f"tampered_{path.name}"
        data = bytearray(path.read_bytes())
        data[len(data) // 2] ^= 1
        copy.write_bytes(data)
        check(f"a changed {path.name} is refused", not self.accepts(copy))


def unpack(release, folder):
    """All files in the archives and the installer of a release."""
    for archive in release.glob("*.zip"):
        with zipfile.ZipFile(archive) as opened:
            opened.extractall(folder / archive.stem)
    (installer,) = release.glob("*.msi")
    run("msiextract", "-C", folder / "installed", installer)
    return installer, [path for path in folder.rglob("*") if path.suffix in (".dll", ".exe")]


def contents(folder):
    return {path.name: path.read_bytes() for path in folder.iterdir()}


def main():
    release, folder = Path(sys.argv[1]), Path(sys.argv[2])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    make_certificates(folder)
    signed = folder / "release"
    shutil.copytree(release, signed)
    verifier = Verifier(folder)
    certificate = folder / "publisher.p12"

    run(SIGN, signed, certificate, "--password-file", folder / "wrong_password", expected=1)
    check("a wrong password leaves the release alone", contents(signed) == contents(release))
    with Authority(folder) as authority:
        run(SIGN, signed, certificate, "--password-file", folder / "password", "--timestamp", authority.url)
    run(sys.executable, "-B", HERE / "release_test.py", signed, *sys.argv[3:])
    check("the signed release passes the test of the unsigned one", True)

    installer, programs = unpack(signed, folder / "unpacked")
    check("library and tool are in archives and installer", sorted(each.name for each in programs)
          == ["Tarnwick.dll", "Tarnwick.dll", "jobobjects.exe", "jobobjects.exe"], programs)
    for path in [installer, *programs]:
        verifier.check_signed(path)
    for path in [installer, *programs[:2]]:
        verifier.check_tampered(path)
    unsigned, programs = unpack(release, folder / "unsigned")
    check("the unsigned release has no signature", not any(verifier.accepts(each) for each in [unsigned, *programs]))
    print("PASSED")


main()
