#pragma once

/// The version of the interface that these headers follow: 12.0 v1.

#define kDDImageVersionMajorNum 12
#define kDDImageVersionMinorNum 0
#define kDDImageVersionReleaseNum 1
#define kDDImageVersionInteger 120001
#define kDDImageVersion "12.0v1"
#define kDDImageVersionLong "12.0 v1"
