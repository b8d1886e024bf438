/// The names under which the type library knows the C++ classes.
#pragma once

#include <string_view>

#include "pelm/object.h"

namespace pelm {
class Base;
class CMain;
class Calendario;
class Conn;
class ManipulaData;
class Menus;
class treeview;

namespace ado {
class Command;
class Connection;
class Recordset;
struct Parameter;
}  // namespace ado

namespace page {
class Application;
class NamedValues;
class Request;
class Response;
class ScriptingContext;
class Server;
class Session;
}  // namespace page

namespace automation {

class FieldObject;
class FieldsObject;
class ParametersObject;

template <class T>
inline constexpr std::string_view kClassName = T::no_name_in_the_type_library;

template <>
inline constexpr std::string_view kClassName<Object> = "Object";
template <>
inline constexpr std::string_view kClassName<Base> = "Base";
template <>
inline constexpr std::string_view kClassName<CMain> = "CMain";
template <>
inline constexpr std::string_view kClassName<Calendario> = "Calendario";
template <>
inline constexpr std::string_view kClassName<Conn> = "Conn";
template <>
inline constexpr std::string_view kClassName<ManipulaData> = "ManipulaData";
template <>
inline constexpr std::string_view kClassName<Menus> = "Menus";
template <>
inline constexpr std::string_view kClassName<treeview> = "treeview";
template <>
inline constexpr std::string_view kClassName<ado::Command> = "Command";
template <>
inline constexpr std::string_view kClassName<ado::Connection> = "Connection";
template <>
inline constexpr std::string_view kClassName<ado::Recordset> = "Recordset";
template <>
inline constexpr std::string_view kClassName<ado::Parameter> = "Parameter";
template <>
inline constexpr std::string_view kClassName<FieldObject> = "Field";
template <>
inline constexpr std::string_view kClassName<FieldsObject> = "Fields";
template <>
inline constexpr std::string_view kClassName<ParametersObject> = "Parameters";
template <>
inline constexpr std::string_view kClassName<page::Application> = "Application";
template <>
inline constexpr std::string_view kClassName<page::NamedValues> = "NamedValues";
template <>
inline constexpr std::string_view kClassName<page::Request> = "Request";
template <>
inline constexpr std::string_view kClassName<page::Response> = "Response";
template <>
inline constexpr std::string_view kClassName<page::ScriptingContext> = "ScriptingContext";
template <>
inline constexpr std::string_view kClassName<page::Server> = "Server";
template <>
inline constexpr std::string_view kClassName<page::Session> = "Session";

}  // namespace automation
}  // namespace pelm
