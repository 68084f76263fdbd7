# SPDX-License-Identifier: Apache-2.0
"""What the system tells of a running process."""

import pathlib


def resident_megabytes(process):
    for line in pathlib.Path(f"/proc/{process}/status").read_text().splitlines():
        if line.startswith("VmRSS:"):
            return int(line.split()[1]) / 1024
    return 0.0
