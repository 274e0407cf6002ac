// A command.
#ifndef GENAPI_ICOMMAND_H
#define GENAPI_ICOMMAND_H

#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {

// Thread-safe; common errors at IValue.
struct GENAPI_DECL_ABSTRACT ICommand : virtual public IValue {
    // Starts the command; access is checked in either case.
    virtual void Execute(bool Verify = true) = 0;
    virtual void operator()() = 0;
    // Whether the command has ended; asks the device while it runs. The callbacks of the command
    // fire with the first true.
    virtual bool IsDone(bool Verify = true) = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_ICOMMAND_H
