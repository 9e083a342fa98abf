/* SPDX-License-Identifier: MIT */
/* The boundary header, included first, alone and twice: it must need nothing else. */
/* The layout tool would drop the second. */
/* clang-format off */
#include "sdk/OrvalisAPI.h"
#include "sdk/OrvalisAPI.h"
/* clang-format on */

/* A callback of the caller's own and one address are all that a program needs to have. */
static void take(OImageFrame *frame) { (void)frame; }

OFrameCallback orvalisHeaderAlone = take;
