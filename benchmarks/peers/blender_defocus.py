"""Blurs a picture with Blender's Defocus node; run by run.py inside Blender.

    blender --background --factory-startup --python-exit-code 1 --python blender_defocus.py \
        -- PICTURE.exr RESULT.exr BLUR FOCAL_PLANE HALF_REGION THREADS

Prints "seconds S": loading, the node and saving, without Blender's start. The node's unit is a
radius in pixels, fed for each pixel through its Z socket:

    BLUR / 2 * min(1, |Z - FOCAL_PLANE| / HALF_REGION)
"""

import sys
import time

import bpy


def math(tree, operation, a, b):
    node = tree.nodes.new("CompositorNodeMath")
    node.operation = operation
    for socket, value in zip(node.inputs, (a, b)):
        if value is None:
            continue
        if isinstance(value, (int, float)):
            socket.default_value = value
        else:
            tree.links.new(value, socket)
    return node.outputs[0]


def radius_of(tree, depth, blur, focal_plane, half_region):
    away = math(tree, "ABSOLUTE", math(tree, "SUBTRACT", depth, focal_plane), None)
    ramp = math(tree, "MINIMUM", math(tree, "DIVIDE", away, half_region), 1.0)
    return math(tree, "MULTIPLY", ramp, 0.5 * blur)


def defocus_node(tree, blur):
    node = tree.nodes.new("CompositorNodeDefocus")
    node.use_zbuffer = False
    node.z_scale = 1.0
    node.blur_max = 0.5 * blur
    node.threshold = 0.0
    node.use_preview = False
    node.bokeh = "CIRCLE"
    return node


def build(scene, picture, blur, focal_plane, half_region):
    scene.use_nodes = True
    tree = scene.node_tree
    tree.nodes.clear()
    source = tree.nodes.new("CompositorNodeImage")
    source.image = picture
    node = defocus_node(tree, blur)
    tree.links.new(source.outputs["Image"], node.inputs["Image"])
    radius = radius_of(tree, source.outputs["Depth"], blur, focal_plane, half_region)
    tree.links.new(radius, node.inputs["Z"])
    composite = tree.nodes.new("CompositorNodeComposite")
    tree.links.new(node.outputs[0], composite.inputs["Image"])


def set_output(render, picture, result, threads):
    render.resolution_x, render.resolution_y = picture.size
    render.resolution_percentage = 100
    render.image_settings.file_format = "OPEN_EXR"
    render.image_settings.color_mode = "RGBA"
    render.image_settings.color_depth = "32"
    render.image_settings.exr_codec = "NONE"
    render.use_file_extension = False
    render.filepath = result
    render.threads_mode = "FIXED"
    render.threads = threads


def main():
    path, result, *numbers = sys.argv[sys.argv.index("--") + 1:]
    blur, focal_plane, half_region, threads = (float(number) for number in numbers)
    begin = time.perf_counter()
    picture = bpy.data.images.load(path)
    scene = bpy.context.scene
    build(scene, picture, blur, focal_plane, half_region)
    set_output(scene.render, picture, result, int(threads))
    bpy.ops.render.render(write_still=True)
    print(f"seconds {time.perf_counter() - begin:.4f}")


main()
