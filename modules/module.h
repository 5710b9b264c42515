// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/version.h"

#include <QString>

#include <cstring>
#include <string_view>
#include <type_traits>

// Parts of the programs that most runs do not need and that bring large libraries along: each is a
// shared library of its own, loaded when it is first asked for and kept until the program ends.
//
// A module gives one interface, a class of pure virtual operations with a static member Name, and
// links no library of the project: there would be two copies of it in one program.
namespace modules {

// What the module "quorvel-NAME.so" gives, which stays its own. Nothing, and in problem what is
// wrong and what helps, when it cannot be loaded or is of another version.
void *load(const char *name, QString *problem);

template <class Interface>
Interface *load(QString *problem)
{
    return static_cast<Interface *>(load(Interface::Name, problem));
}

} // namespace modules

// Gives an instance of the interface out of the module of this name, to programs of this version.
#define QUORVEL_MODULE(Interface, name, instance)                                                  \
    static_assert(std::string_view(Interface::Name) == #name);                                     \
    extern "C" __attribute__((visibility("default"))) void *quorvel_##name(const char *version)    \
    {                                                                                              \
        const std::add_pointer_t<Interface> given = (instance);                                    \
        return std::strcmp(version, QUORVEL_VERSION) == 0 ? given : nullptr;                       \
    }
