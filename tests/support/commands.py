# SPDX-License-Identifier: Apache-2.0
"""Runs programs that know nothing of the checkout."""

import os
import subprocess

ENVIRONMENT = {key: value for key, value in os.environ.items() if not key.startswith(("PYTHON", "PIP_", "QUIVERLEAF_"))}
ENVIRONMENT["PYTHONDONTWRITEBYTECODE"] = "1"


def run(*command, folder="/", fails=False, **environment):
    """What a program prints on its standard output; on both outputs when it has to fail."""
    everything = {**ENVIRONMENT, **environment}
    done = subprocess.run(command, cwd=folder, env=everything, capture_output=True, text=True, check=False)
    if bool(done.returncode) != fails:
        raise AssertionError(f"{command} ended with {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout.strip() + (done.stderr if fails else "")
