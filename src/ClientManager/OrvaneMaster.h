// Base of every client object that needs the engine wrapper: the one wrapper is
// found through the static smWrapper, never handed around.
#ifndef ORVANE_MASTER_H
#define ORVANE_MASTER_H

class MarlEngineWrapper;

class OrvaneMaster {
public:
    OrvaneMaster();
    virtual ~OrvaneMaster();

    // The wrapper stores itself here near the end of its constructor, and does
    // not clear it when it dies.
    static MarlEngineWrapper* smWrapper;
    static MarlEngineWrapper* getWrapper();
};

#endif
