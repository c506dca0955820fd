// Internal: the tree of group names. Hosts ask ObjConverter::getRootOfHierarchy
// for it.
#pragma once

#include <obj_adapter/objHierarchyNode.h>

#include <memory>
#include <string>

namespace obj_adapter {

struct ObjModel;

// The tree last built for the host, and the flags that it was built with.
class ObjHierarchy {
public:
    // Null before the first build.
    ObjHierarchyNode* getRoot() const noexcept { return root.get(); }

    // Destroys the earlier tree and builds a new one from the model's groups.
    //
    // flat               all groups hang under one root; otherwise compound
    //                    names are paths
    // showLastNamesOnly  what the nodes' getName gives
    // rootName           the label of the root where it stands for no group
    //
    // Groups of one name are renamed in the model ("_1", "_2", ...), for good.
    void build(ObjModel& model, bool flat, bool showLastNamesOnly, const std::string& rootName);

    bool wasBuiltWith(bool flat, bool showLastNamesOnly) const noexcept {
        return flat == builtFlat && showLastNamesOnly == builtWithLastNamesOnly;
    }

private:
    std::unique_ptr<ObjHierarchyNode> root;
    bool builtFlat = true;
    bool builtWithLastNamesOnly = true;
};

// The model's tree with these flags, built anew unless it is still valid.
ObjHierarchy& getHierarchy(ObjModel& model, bool flat, bool showLastNamesOnly);

}  // namespace obj_adapter
