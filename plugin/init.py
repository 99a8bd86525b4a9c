# Runs at every start of the host: makes the folder of this file a place for plug-ins.
import os

import nuke

nuke.pluginAddPath(os.path.dirname(os.path.abspath(__file__)))
