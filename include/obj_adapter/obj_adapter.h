// Wavefront OBJ import for host applications: this one header gives all of it.
//
//     #include <obj_adapter/obj_adapter.h>
//
//     using obj_adapter::ObjConverter;
//
//     ObjConverter* converter = ObjConverter::getInstance();
//     converter->setMsgCallback(showMessage);
//     if (converter->importObjDataFromFile("models/cube.obj") == ObjConverter::CONVERTER_OK)
//         for (int face = 0; face < converter->getNumberOfFaces(); ++face)
//             draw(*converter->getFace(face));
//     ObjConverter::clearInstance();
#pragma once

#include <obj_adapter/export.h>
#include <obj_adapter/geometryRecords.h>
#include <obj_adapter/group.h>
#include <obj_adapter/material.h>
#include <obj_adapter/materialText.h>
#include <obj_adapter/objConverter.h>
#include <obj_adapter/objHierarchyNode.h>
#include <obj_adapter/sameRuntime.h>
#include <obj_adapter/version.h>
