#pragma once

/// The mark of everything that crosses the boundary between the host's library and a plug-in.

#define DD_EXPORT __attribute__((visibility("default")))
