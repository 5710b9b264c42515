#!/usr/bin/python3 -B
# SPDX-License-Identifier: GPL-3.0-or-later
"""Stands for a tray: says that items can be shown, and prints the name of each that comes."""

from gi.repository import Gio, GLib

INTERFACE = """<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
</interface></node>"""
PROPERTIES = {
    "RegisteredStatusNotifierItems": lambda: GLib.Variant("as", items),
    "IsStatusNotifierHostRegistered": lambda: GLib.Variant("b", True),
    "ProtocolVersion": lambda: GLib.Variant("i", 0),
}
items = []


def call(_connection, sender, _path, _interface, method, values, invocation):
    if method == "RegisterStatusNotifierItem":
        items.append(values[0])
        print(sender, flush=True)
    invocation.return_value(None)


def get(_connection, _sender, _path, _interface, name):
    return PROPERTIES[name]()


def serve(connection, _name):
    interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
    connection.register_object("/StatusNotifierWatcher", interface, call, get, None)


Gio.bus_own_name(Gio.BusType.SESSION, "org.kde.StatusNotifierWatcher", 0, serve,
                 lambda *_: print("ready", flush=True), None)
GLib.MainLoop().run()
