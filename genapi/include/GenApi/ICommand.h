// A command.
#ifndef GENAPI_ICOMMAND_H
#define GENAPI_ICOMMAND_H

#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {

// Thread-safe; IValue lists the common errors.
struct GENAPI_DECL_ABSTRACT ICommand : virtual public IValue {
    // Starts the command. Access is checked even without Verify.
    virtual void Execute(bool Verify = true) = 0;
    virtual void operator()() = 0;
    // Whether the command has finished; asks the device while it runs. The first true fires the
    // command's callbacks.
    virtual bool IsDone(bool Verify = true) = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_ICOMMAND_H
