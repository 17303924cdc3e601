/* SPDX-License-Identifier: Apache-2.0 */
/* What TRE's own header wants to know of how TRE was built. */
#define HAVE_SYS_TYPES_H 1
#define TRE_VERSION "0.8"
#define TRE_VERSION_1 0
#define TRE_VERSION_2 8
#define TRE_VERSION_3 0
