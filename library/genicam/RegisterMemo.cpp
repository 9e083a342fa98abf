// SPDX-License-Identifier: MIT
// The engine's register cache, enabled for one access at a time.
#include "library/genicam/RegisterMemo.h"

namespace orvalis {
namespace {

void appendText(ArvGc *genicam, ArvDomNode *node, const char *text)
{
    arv_dom_node_append_child(
        node, ARV_DOM_NODE(arv_dom_document_create_text_node(ARV_DOM_DOCUMENT(genicam), text)));
}

/// Creates an integer without a register. Set the name after adding the node to the document;
/// otherwise the engine does not find it by name.
ArvGcNode *addEpoch(ArvGc *genicam, ArvDomNode *root)
{
    ArvGcNode *const epoch = arv_gc_integer_node_new();
    arv_dom_node_append_child(root, ARV_DOM_NODE(epoch));
    arv_dom_element_set_attribute(ARV_DOM_ELEMENT(epoch), "Name", RegisterMemo::epochName);
    ArvGcNode *const value = arv_gc_property_node_new_value();
    arv_dom_node_append_child(ARV_DOM_NODE(epoch), ARV_DOM_NODE(value));
    appendText(genicam, ARV_DOM_NODE(value), "0");
    return epoch;
}

} // namespace

RegisterMemo::RegisterMemo(ArvGc *genicam) : genicam_(genicam)
{
    if (genicam == nullptr)
        return;
    auto *const root =
        ARV_DOM_NODE(arv_dom_document_get_document_element(ARV_DOM_DOCUMENT(genicam)));
    if (root == nullptr)
        return;
    invalidate(root);
    epoch_ = ARV_GC_INTEGER(addEpoch(genicam, root));
}

void RegisterMemo::invalidate(ArvDomNode *node)
{
    if (ARV_IS_GC_REGISTER_NODE(node)) {
        ArvGcNode *const invalidator = arv_gc_invalidator_node_new();
        arv_dom_node_append_child(node, ARV_DOM_NODE(invalidator));
        appendText(genicam_, ARV_DOM_NODE(invalidator), epochName);
    }
    for (ArvDomNode *child = arv_dom_node_get_first_child(node); child != nullptr;
         child = arv_dom_node_get_next_sibling(child))
        if (ARV_IS_GC_NODE(child) && !ARV_IS_GC_PROPERTY_NODE(child))
            invalidate(child); // registers may be in groups
}

void RegisterMemo::use()
{
    if (epoch_ != nullptr)
        arv_gc_set_register_cache_policy(genicam_, ARV_REGISTER_CACHE_POLICY_ENABLE);
}

void RegisterMemo::stop()
{
    if (epoch_ != nullptr)
        arv_gc_set_register_cache_policy(genicam_, ARV_REGISTER_CACHE_POLICY_DISABLE);
}

void RegisterMemo::forget()
{
    Failure ignored;
    if (epoch_ != nullptr) {
        arv_gc_integer_set_value(epoch_, 0,
                                 ignored.slot()); // any write invalidates, whatever the value
    }
}

} // namespace orvalis
