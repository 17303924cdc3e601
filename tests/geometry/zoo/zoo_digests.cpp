// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/zoo/Zoo.h"

#include <cstdio>

/// A line for each body of the zoo and level: how many facets its surface has, and the digest of
/// all its bytes. Builds by other compilers must print the same.
int main()
{
    for (const Testing::ZooShape& shape : Testing::zoo()) {
        for (const unsigned int level : { 2U, 3U, 4U, 5U }) {
            const Testing::SkinReport report = Testing::skin_of(shape.make(), level);
            std::printf("%s %u %.0f %016llx\n", shape.name, level, report.facets,
                static_cast<unsigned long long>(report.digest));
        }
    }
    return 0;
}
