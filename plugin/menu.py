# Runs with the graphical interface only: offers the node in the toolbar.
import nuke

nuke.menu("Nodes").addMenu("Filter").addCommand("Drevin", "nuke.createNode('Drevin')")
