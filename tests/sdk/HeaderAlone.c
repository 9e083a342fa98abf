/* SPDX-License-Identifier: MIT */
/* Includes the boundary header first, alone and twice: it must not need anything else. */
/* clang-format would remove the second include. */
/* clang-format off */
#include "sdk/OrvalisAPI.h"
#include "sdk/OrvalisAPI.h"
/* clang-format on */

/* A program needs only a callback and one address. */
static void take(OImageFrame *frame) { (void)frame; }

OFrameCallback orvalisHeaderAlone = take;
