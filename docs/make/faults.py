# SPDX-License-Identifier: GPL-3.0-or-later
"""What stops the making."""


class DocsError(Exception):
    """A fault of a source, told with its place."""
