# SPDX-License-Identifier: Apache-2.0
"""Asks the Quiverleaf helper about documents.

    from quiverleaf import Helper

    with Helper() as helper:
        facts = helper.metaDataForFile("letter.pdf")
"""

from .client import (
    CONNECTION_NAME,
    OPERATIONS,
    ErrorCode,
    Helper,
    HelperDied,
    HelperError,
    HelperTimeout,
    HelperUnreachable,
    RemoteException,
)

__version__ = "2.0.0"

__all__ = [
    "CONNECTION_NAME",
    "OPERATIONS",
    "ErrorCode",
    "Helper",
    "HelperDied",
    "HelperError",
    "HelperTimeout",
    "HelperUnreachable",
    "RemoteException",
    "__version__",
]
