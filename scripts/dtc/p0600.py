"""P0600-P0999: computer and output circuits, transmission."""
from common import CIRCUIT, CONTROL, CONTROL_RANGE, SOLENOID, SPEED, family, put, run

run(600, ["Serial Communication Link", "Internal Control Module Memory Check Sum Error",
          "Control Module Programming Error", "Internal Control Module Keep Alive Memory (KAM) Error",
          "Internal Control Module Random Access Memory (RAM) Error",
          "Internal Control Module Read Only Memory (ROM) Error", "Control Module Processor",
          "Control Module Performance", 'Control Module VSS Output "A"', 'Control Module VSS Output "B"',
          "Control Module Vehicle Options Error", "Fuel Injector Control Module Performance",
          "Fuel Injector Control Module Relay Control", "TCM Processor", "ECM / TCM Incompatible",
          "Starter Relay Circuit", "Starter Relay Circuit Low", "Starter Relay Circuit High",
          "Alternative Fuel Control Module KAM Error", "Alternative Fuel Control Module RAM/ROM Error",
          "Generator Control Circuit", "Generator Lamp/L Terminal Circuit", "Generator Field/F Terminal Circuit",
          "Generator Lamp Control Circuit", "Fuel Cap Lamp Control Circuit", "Generator Field/F Terminal Circuit Low",
          "Generator Field/F Terminal Circuit High"])
family(627, 'Fuel Pump "A"', CONTROL)
run(630, ["VIN Not Programmed or Incompatible - ECM/PCM", "VIN Not Programmed or Incompatible - TCM",
          "Odometer Not Programmed - ECM/PCM", "Immobilizer Key Not Programmed - ECM/PCM",
          "PCM/ECM/TCM Internal Temperature Too High", "Power Steering Control Circuit",
          "Power Steering Control Circuit Low", "Power Steering Control Circuit High",
          "Throttle Actuator Control Range/Performance (Bank 1)",
          "Throttle Actuator Control Range/Performance (Bank 2)", "Intake Air Heater Control Circuit"])
family(641, 'Sensor Reference Voltage "A"', ["Circuit/Open", "Circuit Low", "Circuit High"])
run(644, ["Driver Display Serial Communication Circuit", "A/C Clutch Relay Control Circuit",
          "A/C Clutch Relay Control Circuit Low", "A/C Clutch Relay Control Circuit High",
          "Immobilizer Lamp Control Circuit", "Speed Control Lamp Control Circuit",
          "Malfunction Indicator Lamp (MIL) Control Circuit"])
family(651, 'Sensor Reference Voltage "B"', ["Circuit/Open", "Circuit Low", "Circuit High"])
run(654, ["Engine RPM Output Circuit", "Engine Hot Lamp Output Control Circuit", "Fuel Level Output Circuit"])
family(657, 'Actuator Supply Voltage "A"', ["Circuit/Open", "Circuit Low", "Circuit High"])
family(660, "Intake Manifold Tuning Valve", CONTROL, "(Bank 1)")
family(663, "Intake Manifold Tuning Valve", CONTROL, "(Bank 2)")
family(666, "PCM/ECM/TCM Internal Temperature Sensor", CIRCUIT[:4])
put(670, "Glow Plug Module Control Circuit")
run(671, [f"Cylinder {n} Glow Plug Circuit" for n in range(1, 13)])
run(683, ["Glow Plug Control Module to PCM Communication Circuit",
          "Glow Plug Control Module to PCM Communication Circuit Range/Performance"])
family(685, "ECM/PCM Power Relay", CONTROL)
family(688, "ECM/PCM Power Relay", ["Sense Circuit/Open", "Sense Circuit Low", "Sense Circuit High"])
run(691, [f"Fan {n} Control Circuit {level}" for n in (1, 2, 3) for level in ("Low", "High")])
family(697, 'Sensor Reference Voltage "C"', ["Circuit/Open", "Circuit Low", "Circuit High"])

run(700, ["Transmission Control System (MIL Request)", "Transmission Control System Range/Performance",
          "Transmission Control System Electrical", 'Brake Switch "B" Circuit', "Clutch Switch Input Circuit"])
family(705, 'Transmission Range Sensor "A"', CIRCUIT, "(PRNDL Input)")
family(710, 'Transmission Fluid Temperature Sensor "A"', CIRCUIT)
family(715, 'Input/Turbine Speed Sensor "A"', SPEED)
put(719, 'Brake Switch "B" Circuit Low')
family(720, "Output Speed Sensor", SPEED)
put(724, 'Brake Switch "B" Circuit High')
family(725, "Engine Speed Input", SPEED)
run(729, ["Gear 6 Incorrect Ratio", "Incorrect Gear Ratio", "Gear 1 Incorrect Ratio", "Gear 2 Incorrect Ratio",
          "Gear 3 Incorrect Ratio", "Gear 4 Incorrect Ratio", "Gear 5 Incorrect Ratio", "Reverse Incorrect Ratio",
          "TCM Engine Speed Output Circuit", "TCM Engine Speed Output Circuit Low",
          "TCM Engine Speed Output Circuit High"])
family(740, "Torque Converter Clutch", ["Circuit/Open", "Circuit Performance or Stuck Off", "Circuit Stuck On",
                                        "Circuit Electrical", "Circuit Intermittent"])
family(745, 'Pressure Control Solenoid "A"', SOLENOID)
for start, letter in ((750, "A"), (755, "B"), (760, "C"), (765, "D"), (770, "E")):
    family(start, f'Shift Solenoid "{letter}"', SOLENOID)
family(775, 'Pressure Control Solenoid "B"', SOLENOID)
run(780, ["Shift Error", "1-2 Shift", "2-3 Shift", "3-4 Shift", "4-5 Shift"])
family(785, "Shift/Timing Solenoid", ["", "Range/Performance", "Low", "High", "Intermittent"])
put(790, "Normal/Performance Switch Circuit")
family(791, 'Intermediate Shaft Speed Sensor "A"', SPEED)
family(795, 'Pressure Control Solenoid "C"', SOLENOID)

run(800, ["Transfer Case Control System (MIL Request)", "Reverse Inhibit Control Circuit",
          "Transmission Control System MIL Request Circuit/Open",
          "1-4 Upshift (Skip Shift) Solenoid Control Circuit", "1-4 Upshift (Skip Shift) Lamp Control Circuit"])
family(805, "Clutch Position Sensor", CIRCUIT)
run(810, ["Clutch Position Control Error", "Excessive Clutch Slippage", "Reverse Input Circuit",
          "Reverse Output Circuit", "Transmission Range Display Circuit", "Upshift Switch Circuit",
          "Downshift Switch Circuit", "Starter Disable Circuit", "Driveline Disconnect Switch Input Circuit",
          "Up and Down Shift Switch to Transmission Range Correlation", "Gear Lever X-Y Position Sensor Circuit",
          "Gear Lever X Position Circuit", "Gear Lever Y Position Circuit", "Gear Lever X Position Circuit Intermittent",
          "Gear Lever Y Position Circuit Intermittent", "Gear Lever Push-Pull Switch (Shift Anticipate)",
          "Up and Down Shift Switch Circuit", "Up and Down Shift Switch Circuit Low",
          "Up and Down Shift Switch Circuit High", "5-6 Shift"])
family(830, 'Clutch Pedal Switch "A"', ["Circuit", "Circuit Low", "Circuit High"])
family(833, 'Clutch Pedal Switch "B"', ["Circuit", "Circuit Low", "Circuit High"])
family(836, "Four Wheel Drive (4WD) Switch", CIRCUIT[:4])
family(840, 'Transmission Fluid Pressure Sensor/Switch "A"', CIRCUIT)
family(845, 'Transmission Fluid Pressure Sensor/Switch "B"', CIRCUIT)
family(850, "Park/Neutral Switch Input", ["Circuit", "Circuit Low", "Circuit High"])
family(853, "Drive Switch Input", ["Circuit", "Circuit Low", "Circuit High"])
family(856, "Traction Control Input Signal", ["", "Range/Performance", "Low", "High"])
family(860, "Gear Shift Module Communication", ["Circuit", "Circuit Low", "Circuit High"])
family(863, "TCM Communication", CIRCUIT[:4])
run(867, ["Transmission Fluid Pressure", "Transmission Fluid Pressure Low", "Transmission Fluid Pressure High"])
family(870, 'Transmission Fluid Pressure Sensor/Switch "C"', CIRCUIT)
family(875, 'Transmission Fluid Pressure Sensor/Switch "D"', CIRCUIT)
family(880, "TCM Power Input Signal", ["", "Range/Performance", "Low", "High", "Intermittent"])
family(885, "TCM Power Relay", CONTROL)
family(888, "TCM Power Relay Sense", CIRCUIT)
run(893, ["Multiple Gears Engaged", "Transmission Component Slipping", "Shift Time Too Short",
          "Shift Time Too Long", "Transmission Fluid Deteriorated",
          "Transmission Control System MIL Request Circuit Low",
          "Transmission Control System MIL Request Circuit High"])

ACTUATOR = ["Circuit/Open", "Circuit Range/Performance", "Circuit Low", "Circuit High"]
family(900, "Clutch Actuator", ACTUATOR)
family(904, "Gate Select Position", CIRCUIT)
put(909, "Gate Select Control Error")
family(910, "Gate Select Actuator", ACTUATOR)
family(914, "Gear Shift Position", CIRCUIT)
put(919, "Gear Shift Position Control Error")
family(920, "Gear Shift Forward Actuator", ACTUATOR)
family(924, "Gear Shift Reverse Actuator", ACTUATOR)
family(928, "Gear Shift Lock Solenoid", CONTROL_RANGE)
family(932, "Hydraulic Pressure Sensor", CIRCUIT)
family(937, "Hydraulic Oil Temperature Sensor", CIRCUIT)
run(942, ["Hydraulic Pressure Unit", "Hydraulic Pressure Unit Cycling Period Too Short",
          "Hydraulic Pressure Unit Loss of Pressure"])
family(945, "Hydraulic Pump Relay", ACTUATOR)
put(949, "Auto Shift Manual Adaptive Learning Not Complete")
family(950, "Auto Shift Manual Control", CIRCUIT)
family(955, "Auto Shift Manual Mode", CIRCUIT)
for start, letter in ((960, "A"), (964, "B"), (968, "C")):
    family(start, f'Pressure Control Solenoid "{letter}"', CONTROL_RANGE)
for start, letter in ((972, "A"), (975, "B"), (978, "C"), (981, "D"), (984, "E")):
    family(start, f'Shift Solenoid "{letter}"', CONTROL_RANGE[1:])
family(987, 'Transmission Fluid Pressure Sensor/Switch "E"', CIRCUIT)
family(992, 'Transmission Fluid Pressure Sensor/Switch "F"', CIRCUIT)
family(997, 'Shift Solenoid "F"', CONTROL_RANGE[1:])
