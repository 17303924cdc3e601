// SPDX-License-Identifier: Apache-2.0
#include <geometry/ValueTypes.h>
#include <tavrobase/FilePath.h>

#include <iostream>

int main()
{
    const Tavro::Vector<double, 3> moved
        = Tavro::Multiply({ 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 10, 20, 30, 1 }, { 1, 2, 3 });
    std::cout << Tavro::FilePath("no-such//place/./x.txt") << ' ' << moved[2] << '\n';
}
