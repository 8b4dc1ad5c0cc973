-- The suite's tables that the program reads and writes, for SQL Server 2008 or newer: run it in the
-- suite's database. What is there already, the suite's own procedure too, is left as it is.
-- It is one batch, so that any client can send it.

set nocount on;

-- Well-known application ports; System = 1 marks those that the system defined.
if object_id('ServicePorts') is null
  create table ServicePorts (
    Port        int not null constraint PK_ServicePorts primary key,
    ServiceName nvarchar(255) null,
    System      bit not null constraint DF_ServicePorts_System default 0,
    Enabled     bit not null constraint DF_ServicePorts_Enabled default 1
  );

-- Named IPv4 ranges; an address a.b.c.d is stored as a*1000^3 + b*1000^2 + c*1000 + d.
if object_id('IPAddressGroups') is null
begin
  create table IPAddressGroups (
    IPAddressGroupID   int identity(1, 1) not null constraint PK_IPAddressGroups primary key,
    IPRangeStart       bigint null,
    IPRangeEnd         bigint null,
    IPAddressGroupName nvarchar(255) null,
    System             bit not null constraint DF_IPAddressGroups_System default 0,
    Enabled            bit not null constraint DF_IPAddressGroups_Enabled default 1
  );
  create index IPAddressGroupsByStart on IPAddressGroups (IPRangeStart);
end;

-- Every endpoint that was seen, with the group it belongs to (0: none).
if object_id('FlowCorrelation') is null
begin
  create table FlowCorrelation (
    IPAddress        nvarchar(15) not null,
    IPAddressSort    bigint not null,
    FullHostname     nvarchar(255) null,
    IPAddressGroupID int not null constraint DF_FlowCorrelation_Group default 0
  );
  create index FlowCorrelationByAddress on FlowCorrelation (IPAddressSort);
  create index FlowCorrelationByGroup on FlowCorrelation (IPAddressGroupID);
end;

-- One row for each computer that runs a NetFlow receiver.
if object_id('FlowEngines') is null
  create table FlowEngines (
    ServerName  nvarchar(255) not null constraint PK_FlowEngines primary key,
    NetFlowPort int null
  );

if object_id('Nodes') is null
  create table Nodes (
    NodeID  int not null constraint PK_Nodes primary key,
    Caption nvarchar(255) null
  );

if object_id('Interfaces') is null
begin
  create table Interfaces (
    InterfaceID int not null constraint PK_Interfaces primary key,
    NodeID      int not null,
    Caption     nvarchar(255) null
  );
  create index InterfacesByNode on Interfaces (NodeID);
end;

-- One row for each interface whose NetFlow exports are accepted.
if object_id('NetFlowSources') is null
  create table NetFlowSources (
    InterfaceID int not null constraint PK_NetFlowSources primary key
  );

if object_id('GlobalSettings') is null
  create table GlobalSettings (
    Name  nvarchar(255) not null constraint PK_GlobalSettings primary key,
    Value nvarchar(max) null
  );

-- Stores a setting, whether it is there or not.
if object_id('tbsp_netflowSetGlobalSetting') is null
exec ('create procedure tbsp_netflowSetGlobalSetting @Name nvarchar(255), @Value nvarchar(max) as
begin
  set nocount on;
  set xact_abort on;
  begin transaction;
  update GlobalSettings with (updlock, serializable) set Value = @Value where Name = @Name;
  if @@rowcount = 0 insert into GlobalSettings (Name, Value) values (@Name, @Value);
  commit transaction;
end');
set nocount off;
