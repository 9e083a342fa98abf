/* SPDX-License-Identifier: MIT */
/* The boundary header, included first, alone and twice: it must need nothing else. */
/* clang-format off: it would drop the second */
#include "sdk/OrvalisAPI.h"
#include "sdk/OrvalisAPI.h"
/* clang-format on */

/* A callback of the caller's own and one address are all that a program needs to have. */
static void take(OImageFrame *frame) { (void)frame; }

OFrameCallback orvalisHeaderAlone = take;
