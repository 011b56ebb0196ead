// How the programs call the library: each of its calls is looked up when it is made. Bound by the loader, all of them
// would be looked up at every start, of which a command makes a handful; bound lazily by the loader, their addresses
// would lie in writable memory. So nothing of the programs is writable that says where a call goes, and a library that
// lacks a call serves every command that does not make it.
#pragma once

// The address of a call in the library that was loaded. Ends the program with status 127, as the loader does, when the
// library has no such call.
void* findLibraryCall(const char* name);

template <class Call>
Call libraryCall(const char* name) {
    return reinterpret_cast<Call>(findLibraryCall(name));
}
