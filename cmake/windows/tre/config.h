/* SPDX-License-Identifier: Apache-2.0 */
/* How TRE is built here: for bytes, without approximate matching. */
#define HAVE_SYS_TYPES_H 1
#define TRE_REGEX_T_FIELD value
