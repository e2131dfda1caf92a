#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Reads a file whose reference system is a link, and fails when anybody follows the link.

    no_fetch.py PROGRAM
"""

import json
import os
import pathlib
import select
import socket
import subprocess
import sys
import tempfile

SECONDS = 60


def linked_map(port):
    link = {"href": f"http://127.0.0.1:{port}/crs", "type": "proj4"}
    point = {"type": "Point", "coordinates": [1, 2]}
    return {
        "type": "FeatureCollection",
        "crs": {"type": "link", "properties": link},
        "features": [{"type": "Feature", "properties": {}, "geometry": point}],
    }


def main():
    with socket.create_server(("127.0.0.1", 0)) as server, tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "linked.geojson"
        file.write_text(json.dumps(linked_map(server.getsockname()[1])), encoding="utf-8")
        without_proxies = {k: v for k, v in os.environ.items() if "proxy" not in k.lower()}
        process = subprocess.Popen([sys.argv[1], "info", str(file)], env=without_proxies)
        try:
            called = False
            while process.poll() is None and not called:
                called = bool(select.select([server], [], [], 0.1)[0])
            called = called or bool(select.select([server], [], [], 0)[0])
        finally:
            process.kill()
            process.wait(SECONDS)
    print("somebody called" if called else "nobody called")
    sys.exit(called)


if __name__ == "__main__":
    main()
