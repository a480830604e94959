#!/usr/bin/env python3
"""Writes cadhost's drawing template and its sample drawings as ASCII DXF.

    scripts/make-drawings.py [--check]

data/template/cadhost-r2018.dxf is the empty R2018 drawing that NEW starts from;
data/samples/{Werkhalle,Lageplan,Schnitt}.dxf are the sample drawings (R2018, R2010, R2000). The
drawing variables, registered applications and named objects of each sample are those of the
former JSON sample of the same name (tests/data/json-drawings/); header variables that the host
knows and the sample does not set carry the host's default from data/hostvars.tsv, so that a
sample shows the same values as before. With --check nothing is written: the exit code is 1 when a
file on disk differs from what would be written.

Python standard library only; the output is the same on every run (fixed dates, handles in order).
"""

import json
import os
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))

VERSIONS = {"R2000": "AC1015", "R2004": "AC1018", "R2007": "AC1021", "R2010": "AC1024",
            "R2013": "AC1027", "R2018": "AC1032"}
ORDER = ["R2000", "R2004", "R2007", "R2010", "R2013", "R2018"]

# 1 January 2025, 00:00, as a Julian date: the creation and update stamps of every file made here.
FIXED_JULIAN_DATE = 2460676.5

# Header variables written, in the order AutoCAD writes them: name, group code(s), the first
# version that has the variable, and the value used when the host does not know the variable.
# Codes "10,20" or "10,20,30" are points. A value of None means: take the host's default.
HEADER = [
    ("$INSBASE", "10,20,30", "R2000", None),
    ("$EXTMIN", "10,20,30", "R2000", None),
    ("$EXTMAX", "10,20,30", "R2000", None),
    ("$LIMMIN", "10,20", "R2000", None),
    ("$LIMMAX", "10,20", "R2000", None),
    ("$ORTHOMODE", "70", "R2000", 0),
    ("$REGENMODE", "70", "R2000", None),
    ("$FILLMODE", "70", "R2000", None),
    ("$QTEXTMODE", "70", "R2000", None),
    ("$MIRRTEXT", "70", "R2000", None),
    ("$LTSCALE", "40", "R2000", None),
    ("$ATTMODE", "70", "R2000", None),
    ("$TEXTSIZE", "40", "R2000", None),
    ("$TRACEWID", "40", "R2000", None),
    ("$TEXTSTYLE", "7", "R2000", None),
    ("$CLAYER", "8", "R2000", None),
    ("$CELTYPE", "6", "R2000", None),
    ("$CECOLOR", "62", "R2000", None),
    ("$CELTSCALE", "40", "R2000", None),
    ("$DISPSILH", "70", "R2000", None),
    ("$DIMSCALE", "40", "R2000", None),
    ("$DIMASZ", "40", "R2000", None),
    ("$DIMEXO", "40", "R2000", None),
    ("$DIMDLI", "40", "R2000", None),
    ("$DIMRND", "40", "R2000", None),
    ("$DIMDLE", "40", "R2000", None),
    ("$DIMEXE", "40", "R2000", None),
    ("$DIMTP", "40", "R2000", None),
    ("$DIMTM", "40", "R2000", None),
    ("$DIMTXT", "40", "R2000", None),
    ("$DIMCEN", "40", "R2000", None),
    ("$DIMTSZ", "40", "R2000", None),
    ("$DIMTOL", "70", "R2000", None),
    ("$DIMLIM", "70", "R2000", None),
    ("$DIMTIH", "70", "R2000", None),
    ("$DIMTOH", "70", "R2000", None),
    ("$DIMSE1", "70", "R2000", None),
    ("$DIMSE2", "70", "R2000", None),
    ("$DIMTAD", "70", "R2000", None),
    ("$DIMZIN", "70", "R2000", None),
    ("$DIMBLK", "1", "R2000", None),
    ("$DIMASO", "70", "R2000", 1),
    ("$DIMSHO", "70", "R2000", 1),
    ("$DIMPOST", "1", "R2000", None),
    ("$DIMAPOST", "1", "R2000", None),
    ("$DIMALT", "70", "R2000", None),
    ("$DIMALTD", "70", "R2000", None),
    ("$DIMALTF", "40", "R2000", None),
    ("$DIMLFAC", "40", "R2000", None),
    ("$DIMTOFL", "70", "R2000", None),
    ("$DIMTVP", "40", "R2000", None),
    ("$DIMTIX", "70", "R2000", None),
    ("$DIMSOXD", "70", "R2000", None),
    ("$DIMSAH", "70", "R2000", None),
    ("$DIMBLK1", "1", "R2000", None),
    ("$DIMBLK2", "1", "R2000", None),
    ("$DIMSTYLE", "2", "R2000", None),
    ("$DIMCLRD", "70", "R2000", None),
    ("$DIMCLRE", "70", "R2000", None),
    ("$DIMCLRT", "70", "R2000", None),
    ("$DIMTFAC", "40", "R2000", None),
    ("$DIMGAP", "40", "R2000", None),
    ("$DIMJUST", "70", "R2000", None),
    ("$DIMSD1", "70", "R2000", None),
    ("$DIMSD2", "70", "R2000", None),
    ("$DIMTOLJ", "70", "R2000", None),
    ("$DIMTZIN", "70", "R2000", None),
    ("$DIMALTZ", "70", "R2000", None),
    ("$DIMALTTZ", "70", "R2000", None),
    ("$DIMUPT", "70", "R2000", None),
    ("$DIMDEC", "70", "R2000", None),
    ("$DIMTDEC", "70", "R2000", None),
    ("$DIMALTU", "70", "R2000", None),
    ("$DIMALTTD", "70", "R2000", None),
    ("$DIMTXSTY", "7", "R2000", None),
    ("$DIMAUNIT", "70", "R2000", None),
    ("$DIMADEC", "70", "R2000", None),
    ("$DIMALTRND", "40", "R2000", None),
    ("$DIMAZIN", "70", "R2000", None),
    ("$DIMDSEP", "70", "R2000", None),
    ("$DIMATFIT", "70", "R2000", None),
    ("$DIMFRAC", "70", "R2000", None),
    ("$DIMLDRBLK", "1", "R2000", None),
    ("$DIMLUNIT", "70", "R2000", None),
    ("$DIMLWD", "70", "R2000", None),
    ("$DIMLWE", "70", "R2000", None),
    ("$DIMTMOVE", "70", "R2000", None),
    ("$DIMFXL", "40", "R2007", None),
    ("$DIMFXLON", "70", "R2007", None),
    ("$DIMJOGANG", "40", "R2007", None),
    ("$DIMTFILL", "70", "R2007", None),
    ("$DIMTFILLCLR", "70", "R2007", None),
    ("$DIMARCSYM", "70", "R2007", None),
    ("$DIMLTYPE", "6", "R2007", None),
    ("$DIMLTEX1", "6", "R2007", None),
    ("$DIMLTEX2", "6", "R2007", None),
    ("$DIMTXTDIRECTION", "70", "R2010", None),
    ("$LUNITS", "70", "R2000", None),
    ("$LUPREC", "70", "R2000", None),
    ("$SKETCHINC", "40", "R2000", None),
    ("$FILLETRAD", "40", "R2000", None),
    ("$AUNITS", "70", "R2000", None),
    ("$AUPREC", "70", "R2000", None),
    ("$MENU", "1", "R2000", "."),
    ("$ELEVATION", "40", "R2000", None),
    ("$PELEVATION", "40", "R2000", 0.0),
    ("$THICKNESS", "40", "R2000", None),
    ("$LIMCHECK", "70", "R2000", None),
    ("$CHAMFERA", "40", "R2000", None),
    ("$CHAMFERB", "40", "R2000", None),
    ("$CHAMFERC", "40", "R2000", None),
    ("$CHAMFERD", "40", "R2000", None),
    ("$SKPOLY", "70", "R2000", None),
    ("$TDCREATE", "40", "R2000", None),
    ("$TDUCREATE", "40", "R2000", None),
    ("$TDUPDATE", "40", "R2000", None),
    ("$TDUUPDATE", "40", "R2000", None),
    ("$TDINDWG", "40", "R2000", None),
    ("$TDUSRTIMER", "40", "R2000", None),
    ("$USRTIMER", "70", "R2000", 1),
    ("$ANGBASE", "50", "R2000", None),
    ("$ANGDIR", "70", "R2000", None),
    ("$PDMODE", "70", "R2000", None),
    ("$PDSIZE", "40", "R2000", None),
    ("$PLINEWID", "40", "R2000", None),
    ("$SPLFRAME", "70", "R2000", None),
    ("$SPLINETYPE", "70", "R2000", None),
    ("$SPLINESEGS", "70", "R2000", None),
    ("$HANDSEED", "5", "R2000", "handseed"),
    ("$SURFTAB1", "70", "R2000", None),
    ("$SURFTAB2", "70", "R2000", None),
    ("$SURFTYPE", "70", "R2000", None),
    ("$SURFU", "70", "R2000", None),
    ("$SURFV", "70", "R2000", None),
    ("$UCSBASE", "2", "R2000", None),
    ("$UCSNAME", "2", "R2000", None),
    ("$UCSORG", "10,20,30", "R2000", None),
    ("$UCSXDIR", "10,20,30", "R2000", None),
    ("$UCSYDIR", "10,20,30", "R2000", None),
    ("$PUCSBASE", "2", "R2000", None),
    ("$PUCSNAME", "2", "R2000", ""),
    ("$PUCSORG", "10,20,30", "R2000", (0.0, 0.0, 0.0)),
    ("$PUCSXDIR", "10,20,30", "R2000", (1.0, 0.0, 0.0)),
    ("$PUCSYDIR", "10,20,30", "R2000", (0.0, 1.0, 0.0)),
    ("$USERI1", "70", "R2000", None),
    ("$USERI2", "70", "R2000", None),
    ("$USERI3", "70", "R2000", None),
    ("$USERI4", "70", "R2000", None),
    ("$USERI5", "70", "R2000", None),
    ("$USERR1", "40", "R2000", None),
    ("$USERR2", "40", "R2000", None),
    ("$USERR3", "40", "R2000", None),
    ("$USERR4", "40", "R2000", None),
    ("$USERR5", "40", "R2000", None),
    ("$WORLDVIEW", "70", "R2000", None),
    ("$SHADEDGE", "70", "R2000", None),
    ("$SHADEDIF", "70", "R2000", None),
    ("$TILEMODE", "70", "R2000", None),
    ("$MAXACTVP", "70", "R2000", None),
    ("$PINSBASE", "10,20,30", "R2000", (0.0, 0.0, 0.0)),
    ("$PLIMCHECK", "70", "R2000", 0),
    ("$PEXTMIN", "10,20,30", "R2000", (1e20, 1e20, 1e20)),
    ("$PEXTMAX", "10,20,30", "R2000", (-1e20, -1e20, -1e20)),
    ("$PLIMMIN", "10,20", "R2000", (0.0, 0.0)),
    ("$PLIMMAX", "10,20", "R2000", (420.0, 297.0)),
    ("$UNITMODE", "70", "R2000", None),
    ("$VISRETAIN", "70", "R2000", None),
    ("$PLINEGEN", "70", "R2000", None),
    ("$PSLTSCALE", "70", "R2000", None),
    ("$TREEDEPTH", "70", "R2000", None),
    ("$CMLSTYLE", "2", "R2000", None),
    ("$CMLJUST", "70", "R2000", None),
    ("$CMLSCALE", "40", "R2000", None),
    ("$PROXYGRAPHICS", "70", "R2000", None),
    ("$MEASUREMENT", "70", "R2000", None),
    ("$CELWEIGHT", "370", "R2000", None),
    ("$ENDCAPS", "280", "R2000", 0),
    ("$JOINSTYLE", "280", "R2000", 0),
    ("$LWDISPLAY", "290", "R2000", None),
    ("$INSUNITS", "70", "R2000", None),
    ("$HYPERLINKBASE", "1", "R2000", ""),
    ("$STYLESHEET", "1", "R2000", ""),
    ("$XEDIT", "290", "R2000", None),
    ("$CEPSNTYPE", "380", "R2000", 0),
    ("$PSTYLEMODE", "290", "R2000", None),
    ("$FINGERPRINTGUID", "2", "R2000", "guid"),
    ("$VERSIONGUID", "2", "R2000", "guid"),
    ("$EXTNAMES", "290", "R2000", None),
    ("$PSVPSCALE", "40", "R2000", 0.0),
    ("$OLESTARTUP", "290", "R2000", 0),
    ("$SORTENTS", "280", "R2004", None),
    ("$INDEXCTL", "280", "R2004", None),
    ("$HIDETEXT", "280", "R2004", None),
    ("$XCLIPFRAME", "280", "R2004", None),
    ("$HALOGAP", "280", "R2004", None),
    ("$OBSCOLOR", "70", "R2004", 257),
    ("$OBSLTYPE", "280", "R2004", 0),
    ("$INTERSECTIONDISPLAY", "280", "R2004", None),
    ("$INTERSECTIONCOLOR", "70", "R2004", None),
    ("$DIMASSOC", "280", "R2004", None),
    ("$PROJECTNAME", "1", "R2004", ""),
    ("$CAMERADISPLAY", "290", "R2007", 0),
    ("$LENSLENGTH", "40", "R2007", None),
    ("$CAMERAHEIGHT", "40", "R2007", 0.0),
    ("$STEPSPERSEC", "40", "R2007", 2.0),
    ("$STEPSIZE", "40", "R2007", 6.0),
    ("$3DDWFPREC", "40", "R2007", 2.0),
    ("$PSOLWIDTH", "40", "R2007", None),
    ("$PSOLHEIGHT", "40", "R2007", None),
    ("$LOFTANG1", "40", "R2007", None),
    ("$LOFTANG2", "40", "R2007", None),
    ("$LOFTMAG1", "40", "R2007", None),
    ("$LOFTMAG2", "40", "R2007", None),
    ("$LOFTPARAM", "70", "R2007", None),
    ("$LOFTNORMALS", "280", "R2007", None),
    ("$LATITUDE", "40", "R2007", 48.137),
    ("$LONGITUDE", "40", "R2007", 11.575),
    ("$NORTHDIRECTION", "40", "R2007", 0.0),
    ("$TIMEZONE", "70", "R2007", 1000),
    ("$LIGHTGLYPHDISPLAY", "280", "R2007", 1),
    ("$TILEMODELIGHTSYNCH", "280", "R2007", 1),
    ("$SOLIDHIST", "280", "R2007", 0),
    ("$SHOWHIST", "280", "R2007", None),
    ("$DWFFRAME", "280", "R2007", 2),
    ("$DGNFRAME", "280", "R2007", 2),
    ("$REALWORLDSCALE", "290", "R2007", 1),
    ("$INTERFERECOLOR", "62", "R2007", 256),
    ("$CSHADOW", "280", "R2007", None),
    ("$SHADOWPLANELOCATION", "40", "R2007", 0.0),
]

# Host variables whose DXF value is not the host's value as written in hostvars.tsv.
COLOR_NAMES = {"BYBLOCK": 0, "BYLAYER": 256}


def since(version, first):
    return ORDER.index(version) >= ORDER.index(first)


def read_hostvars():
    """The host's drawing variables: name -> (type, default text)."""
    result = {}
    with open(os.path.join(ROOT, "data", "hostvars.tsv"), encoding="utf-8") as f:
        for line in f:
            if not line.strip() or line.lstrip().startswith(";"):
                continue
            fields = line.split()
            name, kind, default = fields[0], fields[1], fields[2]
            if kind == "string":
                # A quoted default may hold blanks: take it from the line itself.
                start = line.index('"')
                end = start + 1
                while line[end] != '"':
                    end += 2 if line[end] == "\\" else 1
                default = line[start + 1:end].replace('\\"', '"').replace("\\\\", "\\")
                rest = line[end + 1:].split()
            else:
                rest = fields[3:]
            if len(rest) >= 2 and rest[1] == "drawing":
                result[name.upper()] = (kind, default)
    return result


def host_value(kind, text):
    if kind in ("int", "long"):
        return int(text)
    if kind == "real":
        return float(text)
    if kind in ("point2", "point3"):
        return tuple(float(p) for p in text.split(","))
    return text


def fmt(value):
    if isinstance(value, float):
        if value == int(value) and abs(value) < 1e15:
            return "%.1f" % value
        return repr(value)
    return str(value)


class Drawing:
    """One DXF file being written: tags, handles, and the text encoding of its version."""

    def __init__(self, version, crlf):
        self.version = version
        self.acadver = VERSIONS[version]
        self.crlf = crlf
        self.tags = []
        self.last_handle = 0

    def handle(self):
        self.last_handle += 1
        return "%X" % self.last_handle

    def tag(self, code, value):
        self.tags.append((code, fmt(value)))

    def point(self, p, base=10):
        self.tag(base, float(p[0]))
        self.tag(base + 10, float(p[1]))
        if len(p) > 2:
            self.tag(base + 20, float(p[2]))

    def since(self, first):
        return since(self.version, first)

    def encode(self, text):
        if self.since("R2007"):
            return text.encode("utf-8")
        out = bytearray()
        for ch in text:
            try:
                out += ch.encode("cp1252")
            except UnicodeEncodeError:
                out += ("\\U+%04X" % ord(ch)).encode("ascii")
        return bytes(out)

    def bytes(self):
        end = b"\r\n" if self.crlf else b"\n"
        out = bytearray()
        for code, value in self.tags:
            out += ("%3d" % code).encode("ascii") + end + self.encode(value) + end
        return bytes(out)


def write_drawing(sheet, hostvars):
    """Makes the file of one drawing from its description (see TEMPLATE and the samples below)."""
    d = Drawing(sheet["version"], sheet.get("crlf", False))
    h = {}
    for name in ["VPORT", "LTYPE", "LAYER", "STYLE", "VIEW", "UCS", "APPID", "DIMSTYLE",
                 "BLOCK_RECORD", "nod", "ACAD_GROUP", "ACAD_LAYOUT", "ACAD_MLINESTYLE",
                 "ACAD_PLOTSETTINGS", "ACAD_PLOTSTYLENAME", "Normal", "Standard_mline",
                 "*Model_Space", "*Paper_Space", "Model", "Layout1"]:
        h[name] = d.handle()
    body = Drawing(sheet["version"], sheet.get("crlf", False))
    body.last_handle = d.last_handle
    write_classes(body)
    write_tables(body, sheet, h)
    write_blocks(body, sheet, h)
    write_entities(body, sheet, h)
    write_objects(body, sheet, h)
    body.tag(0, "EOF")
    write_header(d, sheet, hostvars, "%X" % (body.last_handle + 1))
    d.tags += body.tags
    return d.bytes()


def write_header(d, sheet, hostvars, handseed):
    variables = sheet["variables"]
    d.tag(0, "SECTION")
    d.tag(2, "HEADER")
    d.tag(9, "$ACADVER")
    d.tag(1, d.acadver)
    d.tag(9, "$ACADMAINTVER")
    if d.since("R2018"):
        d.tag(90, 4)
    else:
        d.tag(70, 6)
    d.tag(9, "$DWGCODEPAGE")
    d.tag(3, "ANSI_1252")
    if d.since("R2004"):
        d.tag(9, "$LASTSAVEDBY")
        d.tag(1, "cadhost")
    if d.since("R2013"):
        d.tag(9, "$REQUIREDVERSIONS")
        d.tag(160, 0)
    guids = iter(sheet["guids"])
    for name, codes, first, fallback in HEADER:
        if not d.since(first):
            continue
        key = name[1:]
        if key in variables:
            value = variables[key]
            if isinstance(value, list):
                value = tuple(value)
        elif fallback == "handseed":
            value = handseed
        elif fallback == "guid":
            value = next(guids)
        elif key in hostvars:
            value = host_value(*hostvars[key])
        elif key.startswith("TD") and fallback is None:
            value = FIXED_JULIAN_DATE
        else:
            value = fallback
        if value is None:
            raise SystemExit("no value for header variable %s" % name)
        code_list = [int(c) for c in codes.split(",")]
        d.tag(9, name)
        if len(code_list) > 1:
            if len(value) < len(code_list):
                value = tuple(value) + (0.0,)
            for code, v in zip(code_list, value):
                d.tag(code, float(v))
        else:
            code = code_list[0]
            if key == "DIMDSEP":
                value = ord(value) if isinstance(value, str) and value else 0
            elif code == 62 and isinstance(value, str):
                value = COLOR_NAMES.get(value.upper(), 256)
            elif code in (40, 50) and not isinstance(value, float):
                value = float(value)
            d.tag(code, value)
    d.tag(0, "ENDSEC")


CLASSES = [
    ("ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault", 0),
    ("ACDBPLACEHOLDER", "AcDbPlaceHolder", 0),
    ("LAYOUT", "AcDbLayout", 0),
]


def write_classes(d):
    d.tag(0, "SECTION")
    d.tag(2, "CLASSES")
    for dxf_name, cpp_name, flags in CLASSES:
        d.tag(0, "CLASS")
        d.tag(1, dxf_name)
        d.tag(2, cpp_name)
        d.tag(3, "ObjectDBX Classes")
        d.tag(90, flags)
        if d.since("R2004"):
            d.tag(91, 0)
        d.tag(280, 0)
        d.tag(281, 0)
    d.tag(0, "ENDSEC")


def table_head(d, name, handle, count):
    d.tag(0, "TABLE")
    d.tag(2, name)
    d.tag(5, handle)
    d.tag(330, "0")
    d.tag(100, "AcDbSymbolTable")
    d.tag(70, count)
    if name == "DIMSTYLE":
        d.tag(100, "AcDbDimStyleTable")


def record_head(d, kind, owner, subclass, name, handle_code=5, handle=None):
    """A table record's head; its handle is a new one unless given."""
    if handle is None:
        handle = d.handle()
    d.tag(0, kind)
    d.tag(handle_code, handle)
    d.tag(330, owner)
    d.tag(100, "AcDbSymbolTableRecord")
    d.tag(100, subclass)
    d.tag(2, name)
    return handle


def write_tables(d, sheet, h):
    d.tag(0, "SECTION")
    d.tag(2, "TABLES")

    table_head(d, "VPORT", h["VPORT"], 1)
    record_head(d, "VPORT", h["VPORT"], "AcDbViewportTableRecord", "*Active")
    (x0, y0), (x1, y1) = sheet["view"]
    d.tag(70, 0)
    d.point((0.0, 0.0))
    d.point((1.0, 1.0), 11)
    d.point(((x0 + x1) / 2, (y0 + y1) / 2), 12)
    d.point((0.0, 0.0), 13)
    d.point((10.0, 10.0), 14)
    d.point((10.0, 10.0), 15)
    d.point((0.0, 0.0, 1.0), 16)
    d.point((0.0, 0.0, 0.0), 17)
    d.tag(40, float(y1 - y0))
    d.tag(41, round((x1 - x0) / (y1 - y0), 6))
    d.tag(42, 50.0)
    d.tag(43, 0.0)
    d.tag(44, 0.0)
    d.tag(50, 0.0)
    d.tag(51, 0.0)
    for code, value in [(71, 0), (72, 1000), (73, 1), (74, 3), (75, 0), (76, 0), (77, 0), (78, 0)]:
        d.tag(code, value)
    d.tag(281, 0)
    d.tag(65, 1)
    d.point((0.0, 0.0, 0.0), 110)
    d.point((1.0, 0.0, 0.0), 111)
    d.point((0.0, 1.0, 0.0), 112)
    d.tag(79, 0)
    d.tag(146, 0.0)
    d.tag(0, "ENDTAB")

    ltypes = [("ByBlock", "", []), ("ByLayer", "", []), ("Continuous", "Solid line", [])]
    ltypes += sheet.get("linetypes", [])
    table_head(d, "LTYPE", h["LTYPE"], len(ltypes))
    for name, description, pattern in ltypes:
        record_head(d, "LTYPE", h["LTYPE"], "AcDbLinetypeTableRecord", name)
        d.tag(70, 0)
        d.tag(3, description)
        d.tag(72, 65)
        d.tag(73, len(pattern))
        d.tag(40, float(sum(abs(p) for p in pattern)))
        for element in pattern:
            d.tag(49, float(element))
            d.tag(74, 0)
    d.tag(0, "ENDTAB")

    layers = [("0", 7, "Continuous")] + sheet.get("layers", [])
    table_head(d, "LAYER", h["LAYER"], len(layers))
    for name, colour, ltype in layers:
        record_head(d, "LAYER", h["LAYER"], "AcDbLayerTableRecord", name)
        d.tag(70, 0)
        d.tag(62, colour)
        d.tag(6, ltype)
        d.tag(370, -3)
        d.tag(390, h["Normal"])
    d.tag(0, "ENDTAB")

    table_head(d, "STYLE", h["STYLE"], 1)
    h["Standard_style"] = record_head(d, "STYLE", h["STYLE"], "AcDbTextStyleTableRecord",
                                      "Standard")
    for code, value in [(70, 0), (40, 0.0), (41, 1.0), (50, 0.0), (71, 0), (42, 2.5),
                        (3, "txt"), (4, "")]:
        d.tag(code, value)
    d.tag(0, "ENDTAB")

    table_head(d, "VIEW", h["VIEW"], 0)
    d.tag(0, "ENDTAB")
    table_head(d, "UCS", h["UCS"], 0)
    d.tag(0, "ENDTAB")

    apps = sheet["regapps"]
    table_head(d, "APPID", h["APPID"], len(apps))
    for name in apps:
        record_head(d, "APPID", h["APPID"], "AcDbRegAppTableRecord", name)
        d.tag(70, 0)
    d.tag(0, "ENDTAB")

    dimstyles = ["Standard", "ISO-25"]
    table_head(d, "DIMSTYLE", h["DIMSTYLE"], len(dimstyles))
    for name in dimstyles:
        record_head(d, "DIMSTYLE", h["DIMSTYLE"], "AcDbDimStyleTableRecord", name, 105)
        d.tag(70, 0)
        iso = name == "ISO-25"
        for code, value in [(41, 2.5 if iso else 0.18), (42, 0.625 if iso else 0.0625),
                            (43, 3.75 if iso else 0.38), (44, 1.25 if iso else 0.18),
                            (140, 2.5 if iso else 0.18), (141, 2.5 if iso else 0.09),
                            (147, 0.625 if iso else 0.09), (77, 1 if iso else 0),
                            (78, 8 if iso else 0), (271, 2 if iso else 4), (272, 2 if iso else 4),
                            (278, 44 if iso else 46), (340, h["Standard_style"])]:
            d.tag(code, value)
    d.tag(0, "ENDTAB")

    table_head(d, "BLOCK_RECORD", h["BLOCK_RECORD"], 2 + len(sheet.get("blocks", [])))
    for name, layout in [("*Model_Space", h["Model"]), ("*Paper_Space", h["Layout1"])]:
        record_head(d, "BLOCK_RECORD", h["BLOCK_RECORD"], "AcDbBlockTableRecord", name,
                    handle=h[name])
        d.tag(340, layout)
        write_block_record_tail(d)
    for block in sheet.get("blocks", []):
        h["block:" + block["name"]] = record_head(d, "BLOCK_RECORD", h["BLOCK_RECORD"],
                                                  "AcDbBlockTableRecord", block["name"])
        d.tag(340, "0")
        write_block_record_tail(d)
    d.tag(0, "ENDTAB")
    d.tag(0, "ENDSEC")


def write_block_record_tail(d):
    if d.since("R2007"):
        d.tag(70, 0)
        d.tag(280, 1)
        d.tag(281, 0)


def entity_head(d, kind, owner, layer, paper=False):
    d.tag(0, kind)
    d.tag(5, d.handle())
    d.tag(330, owner)
    d.tag(100, "AcDbEntity")
    if paper:
        d.tag(67, 1)
    d.tag(8, layer)


def write_block(d, name, owner, layer, entities, h, paper=False):
    entity_head(d, "BLOCK", owner, layer, paper)
    d.tag(100, "AcDbBlockBegin")
    d.tag(2, name)
    d.tag(70, 0)
    d.point((0.0, 0.0, 0.0))
    d.tag(3, name)
    d.tag(1, "")
    for entity in entities:
        write_entity(d, entity, owner, h)
    entity_head(d, "ENDBLK", owner, layer, paper)
    d.tag(100, "AcDbBlockEnd")


def write_blocks(d, sheet, h):
    d.tag(0, "SECTION")
    d.tag(2, "BLOCKS")
    write_block(d, "*Model_Space", h["*Model_Space"], "0", [], h)
    write_block(d, "*Paper_Space", h["*Paper_Space"], "0", [], h, paper=True)
    for block in sheet.get("blocks", []):
        write_block(d, block["name"], h["block:" + block["name"]], "0", block["entities"], h)
    d.tag(0, "ENDSEC")


def write_entity(d, e, owner, h):
    kind = e[0]
    entity_head(d, kind, owner, e[1])
    if kind == "LINE":
        d.tag(100, "AcDbLine")
        d.point(tuple(e[2]) + (0.0,))
        d.point(tuple(e[3]) + (0.0,), 11)
    elif kind == "LWPOLYLINE":
        points, closed = e[2], e[3]
        d.tag(100, "AcDbPolyline")
        d.tag(90, len(points))
        d.tag(70, 1 if closed else 0)
        d.tag(43, 0.0)
        for p in points:
            d.point(p)
    elif kind == "CIRCLE":
        d.tag(100, "AcDbCircle")
        d.point(tuple(e[2]) + (0.0,))
        d.tag(40, float(e[3]))
    elif kind == "ARC":
        d.tag(100, "AcDbCircle")
        d.point(tuple(e[2]) + (0.0,))
        d.tag(40, float(e[3]))
        d.tag(100, "AcDbArc")
        d.tag(50, float(e[4]))
        d.tag(51, float(e[5]))
    elif kind == "TEXT":
        d.tag(100, "AcDbText")
        d.point(tuple(e[2]) + (0.0,))
        d.tag(40, float(e[3]))
        d.tag(1, e[4])
        d.tag(7, "Standard")
        d.tag(100, "AcDbText")
    elif kind == "INSERT":
        d.tag(100, "AcDbBlockReference")
        d.tag(2, e[2])
        d.point(tuple(e[3]) + (0.0,))
    else:
        raise SystemExit("unknown entity " + kind)


def write_entities(d, sheet, h):
    d.tag(0, "SECTION")
    d.tag(2, "ENTITIES")
    for entity in sheet.get("entities", []):
        write_entity(d, entity, h["*Model_Space"], h)
    d.tag(0, "ENDSEC")


def object_head(d, kind, handle, owner, reactors=True):
    """An object's head; the dictionary that owns it is its reactor too (not so for the root)."""
    d.tag(0, kind)
    d.tag(5, handle)
    if reactors:
        d.tag(102, "{ACAD_REACTORS")
        d.tag(330, owner)
        d.tag(102, "}")
    d.tag(330, owner)


def dictionary_head(d, handle, owner, kind="DICTIONARY", reactors=True):
    object_head(d, kind, handle, owner, reactors)
    d.tag(100, "AcDbDictionary")
    d.tag(281, 1)


def write_layout(d, handle, owner, name, order, block_record, limits):
    object_head(d, "LAYOUT", handle, owner)
    d.tag(100, "AcDbPlotSettings")
    for code, value in [(1, ""), (2, "none_device"), (4, "ISO_A3_(420.00_x_297.00_MM)"), (6, ""),
                        (40, 7.5), (41, 20.0), (42, 7.5), (43, 20.0), (44, 420.0), (45, 297.0),
                        (46, 0.0), (47, 0.0), (48, 0.0), (49, 0.0), (140, 0.0), (141, 0.0),
                        (142, 1.0), (143, 1.0), (70, 1712 if order == 0 else 688), (72, 1),
                        (73, 0), (74, 5 if order == 0 else 1), (7, ""), (75, 16), (76, 0),
                        (77, 2), (78, 300), (147, 1.0), (148, 0.0), (149, 0.0)]:
        d.tag(code, value)
    d.tag(100, "AcDbLayout")
    d.tag(1, name)
    d.tag(70, 1)
    d.tag(71, order)
    (x0, y0), (x1, y1) = limits
    d.point((x0, y0))
    d.point((x1, y1), 11)
    d.point((0.0, 0.0, 0.0), 12)
    d.point((1e20, 1e20, 1e20), 14)
    d.point((-1e20, -1e20, -1e20), 15)
    d.tag(146, 0.0)
    d.point((0.0, 0.0, 0.0), 13)
    d.point((1.0, 0.0, 0.0), 16)
    d.point((0.0, 1.0, 0.0), 17)
    d.tag(76, 0)
    d.tag(330, block_record)


def write_objects(d, sheet, h):
    d.tag(0, "SECTION")
    d.tag(2, "OBJECTS")
    nod = h["nod"]
    standard = [("ACAD_GROUP", h["ACAD_GROUP"]), ("ACAD_LAYOUT", h["ACAD_LAYOUT"]),
                ("ACAD_MLINESTYLE", h["ACAD_MLINESTYLE"]),
                ("ACAD_PLOTSETTINGS", h["ACAD_PLOTSETTINGS"]),
                ("ACAD_PLOTSTYLENAME", h["ACAD_PLOTSTYLENAME"])]
    own = [(name, d.handle()) for name in sheet["named_objects"] if name != "ACAD_GROUP"]
    entries = sorted(standard + own)
    dictionary_head(d, nod, "0", reactors=False)
    for name, handle in entries:
        d.tag(3, name)
        d.tag(350, handle)
    for name, handle in entries:
        if name == "ACAD_LAYOUT":
            dictionary_head(d, handle, nod)
            d.tag(3, "Layout1")
            d.tag(350, h["Layout1"])
            d.tag(3, "Model")
            d.tag(350, h["Model"])
        elif name == "ACAD_MLINESTYLE":
            dictionary_head(d, handle, nod)
            d.tag(3, "Standard")
            d.tag(350, h["Standard_mline"])
        elif name == "ACAD_PLOTSTYLENAME":
            dictionary_head(d, handle, nod, kind="ACDBDICTIONARYWDFLT")
            d.tag(3, "Normal")
            d.tag(350, h["Normal"])
            d.tag(100, "AcDbDictionaryWithDefault")
            d.tag(340, h["Normal"])
        elif name in ("ACAD_GROUP", "ACAD_PLOTSETTINGS"):
            dictionary_head(d, handle, nod)
        else:
            write_named_object(d, handle, nod, sheet["named_objects"][name]["dictionary"])
    object_head(d, "ACDBPLACEHOLDER", h["Normal"], h["ACAD_PLOTSTYLENAME"])
    object_head(d, "MLINESTYLE", h["Standard_mline"], h["ACAD_MLINESTYLE"])
    d.tag(100, "AcDbMlineStyle")
    for code, value in [(2, "Standard"), (70, 0), (3, ""), (62, 256), (51, 90.0), (52, 90.0),
                        (71, 2), (49, 0.5), (62, 256), (6, "BYLAYER"), (49, -0.5), (62, 256),
                        (6, "BYLAYER")]:
        d.tag(code, value)
    write_layout(d, h["Layout1"], h["ACAD_LAYOUT"], "Layout1", 1, h["*Paper_Space"],
                 ((0.0, 0.0), (420.0, 297.0)))
    write_layout(d, h["Model"], h["ACAD_LAYOUT"], "Model", 0, h["*Model_Space"],
                 sheet["view"])
    d.tag(0, "ENDSEC")


def write_named_object(d, handle, owner, content):
    """A dictionary of the drawing's own, with its nested dictionaries and xrecords."""
    children = [(name, d.handle(), value) for name, value in content.items()]
    dictionary_head(d, handle, owner)
    for name, child, _ in children:
        d.tag(3, name)
        d.tag(350, child)
    for name, child, value in children:
        if "dictionary" in value:
            write_named_object(d, child, handle, value["dictionary"])
            continue
        object_head(d, "XRECORD", child, handle)
        d.tag(100, "AcDbXrecord")
        d.tag(280, 1)
        for code, item in value["xrecord"]:
            d.tag(code, float(item) if 10 <= code < 60 else item)


# ---- the drawings -------------------------------------------------------------------------------


def rect(x0, y0, x1, y1):
    return [(x0, y0), (x1, y0), (x1, y1), (x0, y1)]


def title_block(layer, frame, x1, y0, unit, title, scale, date, drawn_by, project):
    """A drawing frame and a title block in its lower right corner; unit is one paper millimetre
    in drawing units."""
    w, row = 180 * unit, 8 * unit
    x0 = x1 - w
    text = 3.5 * unit
    small = 2.5 * unit
    entities = [("LWPOLYLINE", layer, frame, True),
                ("LWPOLYLINE", layer, rect(x0, y0, x1, y0 + 4 * row), True)]
    for i in range(1, 4):
        entities.append(("LINE", layer, (x0, y0 + i * row), (x1, y0 + i * row)))
    entities.append(("LINE", layer, (x0 + 90 * unit, y0), (x0 + 90 * unit, y0 + 2 * row)))
    pad = 2 * unit
    entities += [
        ("TEXT", layer, (x0 + pad, y0 + 3 * row + pad), small * 1.2, project),
        ("TEXT", layer, (x0 + pad, y0 + 2 * row + pad), text * 1.4, title),
        ("TEXT", layer, (x0 + pad, y0 + row + pad), text, "Maßstab " + scale),
        ("TEXT", layer, (x0 + 90 * unit + pad, y0 + row + pad), text, "Datum " + date),
        ("TEXT", layer, (x0 + pad, y0 + pad), text, "Gezeichnet " + drawn_by),
        ("TEXT", layer, (x0 + 90 * unit + pad, y0 + pad), text, "Blatt 1 von 1"),
    ]
    return entities


def werkhalle():
    """A production hall, 60 m by 36 m, with its column grid, a gate, a door and room names (mm)."""
    walls, axes, columns, doors, texts, title = ("A-WAND", "A-ACHSE", "A-STUETZE", "A-TUER",
                                                  "A-TEXT", "Z-SCHRIFTFELD")
    ox, oy = 8000, 10000  # the hall's south-west corner on the sheet
    length, width, wall = 60000, 36000, 365
    gate = (36000, 41000)  # the gate's opening in the south wall

    def at(x, y):
        return (ox + x, oy + y)

    e = []
    # The outer walls as two runs around the hall, open at the gate.
    e.append(("LWPOLYLINE", walls, [at(gate[1], 0), at(length, 0), at(length, width),
                                    at(0, width), at(0, 0), at(gate[0], 0)], False))
    e.append(("LWPOLYLINE", walls, [at(gate[1], wall), at(length - wall, wall),
                                    at(length - wall, width - wall), at(wall, width - wall),
                                    at(wall, wall), at(gate[0], wall)], False))
    for x in gate:
        e.append(("LINE", walls, at(x, 0), at(x, wall)))
    # The dividing wall between store and production, with a door.
    for x in (20000, 20240):
        e.append(("LINE", walls, at(x, wall), at(x, 16000)))
        e.append(("LINE", walls, at(x, 17200), at(x, width - wall)))
    e.append(("ARC", doors, at(20240, 16000), 1200, 0, 90))
    e.append(("LINE", doors, at(20240, 16000), at(21440, 16000)))
    e.append(("ARC", doors, at(gate[0], 0), 5000, 270, 360))
    e.append(("LINE", doors, at(gate[0], 0), at(gate[0], -5000)))
    for i in range(11):
        x = i * 6000
        e.append(("LINE", axes, at(x, -2500), at(x, width + 2500)))
        e.append(("CIRCLE", axes, at(x, width + 3250), 750))
        e.append(("TEXT", axes, at(x - 200, width + 3050), 400, chr(ord("A") + i)))
        for y in (0, 18000, width):
            e.append(("CIRCLE", columns, at(x, y), 200))
    for j, y in enumerate((0, 18000, width)):
        e.append(("LINE", axes, at(-2500, y), at(length + 2500, y)))
        e.append(("CIRCLE", axes, at(-3250, y), 750))
        e.append(("TEXT", axes, at(-3450, y - 200), 400, str(j + 1)))
    e.append(("TEXT", texts, at(6000, 24000), 700, "Lager"))
    e.append(("TEXT", texts, at(6000, 22800), 400, "A = 705,4 m²"))
    e.append(("TEXT", texts, at(34000, 24000), 700, "Fertigung"))
    e.append(("TEXT", texts, at(34000, 22800), 400, "A = 1 404,6 m²"))
    e.append(("TEXT", texts, at(35500, 1200), 400, "Rolltor 5,00 × 4,50 m"))
    e += title_block(title, rect(-4500, -4500, 79600, 54900), 79600, -4500, 100,
                     "Werkhalle Nord, Bauteil B", "1:50", "15.01.2024", "M. Krüger",
                     "Entwurf - Grundriss EG")
    return {
        "version": "R2018",
        "view": ((-5000, -5000), (84100, 59400)),
        "linetypes": [("DASHED", "Strich __ __ __", [600.0, -300.0])],
        "layers": [(walls, 7, "Continuous"), (axes, 1, "DASHED"), (columns, 5, "Continuous"),
                   (doors, 3, "Continuous"), (texts, 2, "Continuous"),
                   (title, 8, "Continuous")],
        "entities": e,
        "guids": ["{7C1E5A20-3B41-4F7E-9D2A-0B6F1C3E5A01}",
                  "{7C1E5A20-3B41-4F7E-9D2A-0B6F1C3E5A02}"],
    }


def lageplan():
    """A site plan in UTM coordinates (metres) on an A3 sheet at 1:500: parcels, two buildings,
    a road with its bend, trees and a north arrow."""
    e = []
    x, y = 3456120.0, 5512340.0
    parcels, buildings, road, trees, texts, title = ("V-FLURSTUECK", "V-GEBAEUDE", "V-STRASSE",
                                                     "V-BAUM", "V-TEXT", "Z-SCHRIFTFELD")

    def at(dx, dy):
        return (x + dx, y + dy)

    corners = {"sw": at(0, 0), "s": at(60, 4), "se": at(115, 8), "w": at(-3, 47),
               "m": at(58, 52), "e": at(112, 57), "nw": at(-5, 85), "n": at(55, 90),
               "ne": at(110, 93)}
    for a, b, c, d in (("sw", "s", "m", "w"), ("s", "se", "e", "m"), ("w", "m", "n", "nw"),
                       ("m", "e", "ne", "n")):
        e.append(("LWPOLYLINE", parcels, [corners[a], corners[b], corners[c], corners[d]], True))
    e.append(("LWPOLYLINE", buildings, [at(12, 14), at(40, 16), at(39, 34), at(11, 32)], True))
    e.append(("LWPOLYLINE", buildings, [at(72, 18), at(96, 20), at(95, 40), at(71, 38)], True))
    e.append(("LWPOLYLINE", buildings, [at(10, 58), at(36, 60), at(35, 76), at(9, 74)], True))
    e.append(("LINE", road, at(-20, -6), at(120, 4)))
    e.append(("LINE", road, at(-20, -14), at(120, -4)))
    e.append(("ARC", road, at(120, 34), 30, 270, 360))
    e.append(("ARC", road, at(120, 34), 38, 270, 360))
    for i in range(6):
        e.append(("CIRCLE", trees, at(5 + i * 19, 2), 3))
    for dx, dy in ((70, 70), (80, 78), (92, 68)):
        e.append(("CIRCLE", trees, at(dx, dy), 4))
    e.append(("TEXT", texts, at(22, 40), 2.5, "Flst. 1234/5"))
    e.append(("TEXT", texts, at(80, 46), 2.5, "Flst. 1234/6"))
    e.append(("TEXT", texts, at(20, 80), 2.5, "Flst. 1234/7"))
    e.append(("TEXT", texts, at(78, 84), 2.5, "Flst. 1235"))
    e.append(("TEXT", texts, at(14, 24), 2.0, "Wohnhaus"))
    e.append(("TEXT", texts, at(74, 28), 2.0, "Garage"))
    e.append(("TEXT", texts, at(12, 66), 2.0, "Scheune"))
    e.append(("TEXT", texts, at(30, -8.8), 2.5, "Mühlweg"))
    # North arrow.
    e.append(("LWPOLYLINE", texts, [at(150, 70), at(154, 60), at(150, 63), at(146, 60)], True))
    e.append(("LINE", texts, at(150, 50), at(150, 70)))
    e.append(("TEXT", texts, at(148.5, 72), 4.0, "N"))
    frame = (at(-40, -50), at(170, 98.5))
    e += title_block(title, rect(frame[0][0], frame[0][1], frame[1][0], frame[1][1]),
                     frame[1][0], frame[0][1], 0.5, "Lageplan Mühlweg", "1:500", "03.04.2024",
                     "S. Öztürk", "ETRS89 / UTM 32N")
    return {
        "version": "R2010",
        "crlf": True,
        "view": (at(-45, -55), at(175, 103.5)),
        "layers": [(parcels, 1, "Continuous"), (buildings, 5, "Continuous"),
                   (road, 8, "Continuous"), (trees, 3, "Continuous"), (texts, 7, "Continuous"),
                   (title, 7, "Continuous")],
        "entities": e,
        "guids": ["{2F8B4C11-6D07-4A39-8E52-C4A1D07B3F11}",
                  "{2F8B4C11-6D07-4A39-8E52-C4A1D07B3F12}"],
    }


def schnitt():
    """A cross section through a slope with a retaining wall, its footing and a tree (cm)."""
    ground, wall, footing, texts, title = ("S-GELAENDE", "S-WAND", "S-FUNDAMENT", "S-TEXT",
                                           "Z-SCHRIFTFELD")
    e = []
    e.append(("LWPOLYLINE", ground, [(0, 0), (400, 0), (400, 250), (900, 310), (1200, 320)],
              False))
    e.append(("LINE", ground, (0, 0), (-200, -20)))
    e.append(("LWPOLYLINE", wall, rect(400, 0, 430, 280), True))
    e.append(("LWPOLYLINE", footing, rect(360, -80, 520, 0), True))
    e.append(("CIRCLE", footing, (480, -40), 10))
    # A tree on the upper ground: trunk and crown.
    e.append(("LINE", ground, (900, 310), (900, 350)))
    e.append(("ARC", ground, (900, 390), 45, 298, 242))
    e.append(("TEXT", texts, (20, 340), 12, "Geländeschnitt A-A"))
    e.append(("TEXT", texts, (20, 320), 7, "Höhe ±0,00 = 312,45 m ü. NN"))
    e.append(("TEXT", texts, (440, 140), 6, "Stützwand C30/37"))
    e.append(("TEXT", texts, (440, -60), 6, "Ø 20 Drainage"))
    e.append(("TEXT", texts, (620, 300), 6, "Δh = 2,50 m"))
    e += title_block(title, rect(-250, -180, 1340, 460), 1340, -180, 2, "Geländeschnitt A-A",
                     "1:20", "22.05.2024", "J. Weiß", "Stützwand Hangseite")
    return {
        "version": "R2000",
        "crlf": True,
        "view": ((-260, -190), (1350, 470)),
        "layers": [(ground, 3, "Continuous"), (wall, 7, "Continuous"),
                   (footing, 8, "Continuous"), (texts, 2, "Continuous"),
                   (title, 7, "Continuous")],
        "entities": e,
        "guids": ["{91D3E6A0-2C5B-47F8-B1E4-5A6C7D8E9F21}",
                  "{91D3E6A0-2C5B-47F8-B1E4-5A6C7D8E9F22}"],
    }


def template():
    return {
        "version": "R2018",
        "view": ((0.0, 0.0), (420.0, 297.0)),
        "variables": {},
        "regapps": ["ACAD"],
        "named_objects": {"ACAD_GROUP": {"dictionary": {}}},
        "guids": ["{3A0C5E71-84B2-4D16-A9F3-1E7C2B5D8F01}",
                  "{3A0C5E71-84B2-4D16-A9F3-1E7C2B5D8F02}"],
    }


def from_json(sheet, name):
    """Takes the drawing variables, applications and named objects of the former JSON sample."""
    path = os.path.join(ROOT, "tests", "data", "json-drawings", name + ".dwg")
    with open(path, encoding="utf-8") as f:
        old = json.load(f)
    sheet["variables"] = old.get("variables", {})
    sheet["regapps"] = old.get("regApps", [])
    sheet["named_objects"] = old.get("namedObjects", {})
    return sheet


def outputs():
    yield "data/template/cadhost-r2018.dxf", template()
    yield "data/samples/Werkhalle.dxf", from_json(werkhalle(), "Werkhalle")
    yield "data/samples/Lageplan.dxf", from_json(lageplan(), "Lageplan")
    yield "data/samples/Schnitt.dxf", from_json(schnitt(), "Schnitt")


def main():
    check = "--check" in sys.argv[1:]
    hostvars = read_hostvars()
    stale = []
    for rel, sheet in outputs():
        data = write_drawing(sheet, hostvars)
        path = os.path.join(ROOT, rel)
        if check:
            try:
                with open(path, "rb") as f:
                    if f.read() != data:
                        stale.append(rel)
            except OSError:
                stale.append(rel)
            continue
        os.makedirs(os.path.dirname(path), exist_ok=True)
        tmp = path + ".tmp"
        with open(tmp, "wb") as f:
            f.write(data)
        os.replace(tmp, path)
        print("wrote", rel)
    if stale:
        print("out of date (run scripts/make-drawings.py):", " ".join(stale))
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
