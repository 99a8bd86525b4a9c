# Single precision stays plain, so that builds, machines and thread counts agree: no contraction into
# fused multiply-adds, and nothing of fast-math that changes a value. Exceptions of floating point are
# neither trapped nor looked at, which lets loops with conditions be made for many values at once.
add_library(drevin_floating_point INTERFACE)
target_compile_options(drevin_floating_point INTERFACE -ffp-contract=off -fno-fast-math -fno-trapping-math)
