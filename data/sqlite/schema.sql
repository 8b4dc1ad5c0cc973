-- The suite's tables that the program reads and writes, for the embedded engine.
-- Text columns compare without regard to case, as the production server's do.

PRAGMA journal_mode = WAL;

-- Well-known application ports; System = 1 marks those that the system defined.
CREATE TABLE ServicePorts (
  Port        INTEGER PRIMARY KEY,
  ServiceName TEXT COLLATE NOCASE,
  System      INTEGER NOT NULL DEFAULT 0,
  Enabled     INTEGER NOT NULL DEFAULT 1
);

-- Named IPv4 ranges; an address a.b.c.d is stored as a*1000^3 + b*1000^2 + c*1000 + d.
CREATE TABLE IPAddressGroups (
  IPAddressGroupID   INTEGER PRIMARY KEY AUTOINCREMENT,
  IPRangeStart       INTEGER,
  IPRangeEnd         INTEGER,
  IPAddressGroupName TEXT COLLATE NOCASE,
  System             INTEGER NOT NULL DEFAULT 0,
  Enabled            INTEGER NOT NULL DEFAULT 1
);
CREATE INDEX IPAddressGroupsByStart ON IPAddressGroups (IPRangeStart);

-- Every endpoint that was seen, with the group it belongs to (0: none).
CREATE TABLE FlowCorrelation (
  IPAddress        TEXT COLLATE NOCASE NOT NULL,
  IPAddressSort    INTEGER NOT NULL,
  FullHostname     TEXT COLLATE NOCASE,
  IPAddressGroupID INTEGER NOT NULL DEFAULT 0
);
CREATE INDEX FlowCorrelationByAddress ON FlowCorrelation (IPAddressSort);
CREATE INDEX FlowCorrelationByGroup ON FlowCorrelation (IPAddressGroupID);

-- One row for each computer that runs a NetFlow receiver.
CREATE TABLE FlowEngines (
  ServerName  TEXT COLLATE NOCASE PRIMARY KEY,
  NetFlowPort INTEGER
);

CREATE TABLE Nodes (
  NodeID  INTEGER PRIMARY KEY,
  Caption TEXT COLLATE NOCASE
);

CREATE TABLE Interfaces (
  InterfaceID INTEGER PRIMARY KEY,
  NodeID      INTEGER NOT NULL,
  Caption     TEXT COLLATE NOCASE
);
CREATE INDEX InterfacesByNode ON Interfaces (NodeID);

-- One row for each interface whose NetFlow exports are accepted.
CREATE TABLE NetFlowSources (
  InterfaceID INTEGER PRIMARY KEY
);

CREATE TABLE GlobalSettings (
  Name  TEXT COLLATE NOCASE PRIMARY KEY,
  Value TEXT
);
