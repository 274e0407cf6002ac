"""The logger of the package."""

import logging

logger = logging.getLogger("zelcam")
logger.addHandler(logging.NullHandler())
