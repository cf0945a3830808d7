"""P2300-P2999: ignition coils and knock, emission controls, inputs and outputs, transmission."""
from common import CIRCUIT, CIRCUIT_ERRATIC, CONTROL, CONTROL_RANGE, LETTERS, SOLENOID, SPEED, family, put, run

for index, letter in enumerate(LETTERS):
    run(2300 + 3 * index, [f'Ignition Coil "{letter}" Primary Control Circuit Low',
                           f'Ignition Coil "{letter}" Primary Control Circuit High',
                           f'Ignition Coil "{letter}" Secondary Circuit'])
run(2336, [f"Cylinder {n} Above Knock Threshold" for n in range(1, 13)])

EVAP = "Evaporative Emission System"
family(2400, f"{EVAP} Leak Detection Pump", CONTROL)
family(2403, f"{EVAP} Leak Detection Pump Sense", ["Circuit/Open", "Circuit Range/Performance", "Circuit Low",
                                                   "Circuit High", "Circuit Intermittent/Erratic"])
family(2408, "Fuel Cap Sensor/Switch", CIRCUIT_ERRATIC)
run(2413, ["Exhaust Gas Recirculation System Performance", "O2 Sensor Exhaust Sample Error (Bank 1 Sensor 1)",
           "O2 Sensor Exhaust Sample Error (Bank 2 Sensor 1)",
           "O2 Sensor Signals Swapped Bank 1 Sensor 2 / Bank 1 Sensor 3",
           "O2 Sensor Signals Swapped Bank 2 Sensor 2 / Bank 2 Sensor 3"])
family(2418, f"{EVAP} Switching Valve", CONTROL)
run(2421, [f"{EVAP} Vent Valve Stuck Open", f"{EVAP} Vent Valve Stuck Closed",
           "HC Adsorption Catalyst Efficiency Below Threshold (Bank 1)",
           "HC Adsorption Catalyst Efficiency Below Threshold (Bank 2)"])
family(2425, "Exhaust Gas Recirculation Cooling Valve", CONTROL)
run(2428, ["Exhaust Gas Temperature Too High (Bank 1)", "Exhaust Gas Temperature Too High (Bank 2)"])
for start, bank in ((2430, 1), (2435, 2)):
    family(start, "Secondary Air Injection System Air Flow/Pressure Sensor", CIRCUIT_ERRATIC, f"(Bank {bank})")
run(2440, [f"Secondary Air Injection System Switching Valve Stuck {state} (Bank {bank})"
           for bank in (1, 2) for state in ("Open", "Closed")])
run(2444, [f"Secondary Air Injection System Pump Stuck {state} (Bank {bank})"
           for bank in (1, 2) for state in ("On", "Off")])
run(2448, ["Secondary Air Injection System High Airflow (Bank 1)",
           "Secondary Air Injection System High Airflow (Bank 2)",
           f"{EVAP} Switching Valve Performance / Stuck Open", f"{EVAP} Switching Valve Stuck Closed"])
family(2452, 'Diesel Particulate Filter Pressure Sensor "A"', CIRCUIT_ERRATIC)
run(2457, ["Exhaust Gas Recirculation Cooling System Performance",
           "Diesel Particulate Filter Regeneration Duration", "Diesel Particulate Filter Regeneration Frequency"])

run(2500, ["Generator Lamp/L-Terminal Circuit Low", "Generator Lamp/L-Terminal Circuit High",
           "Charging System Voltage", "Charging System Voltage Low", "Charging System Voltage High"])
family(2505, "ECM/PCM Power Input Signal", ["", "Range/Performance", "Low", "High", "Intermittent"])
run(2510, ["ECM/PCM Power Relay Sense Circuit Range/Performance", "ECM/PCM Power Relay Sense Circuit Intermittent"])
family(2512, "Event Data Recorder Request", ["Circuit/Open", "Circuit Low", "Circuit High"])
family(2515, 'A/C Refrigerant Pressure Sensor "B"', CIRCUIT[:4])
family(2519, 'A/C Request "A"', ["Circuit", "Circuit Low", "Circuit High"])
family(2522, 'A/C Request "B"', ["Circuit", "Circuit Low", "Circuit High"])
family(2525, "Vacuum Reservoir Pressure Sensor", CIRCUIT)
for start, position in ((2530, "Run"), (2533, "Run/Start"), (2536, "Accessory")):
    family(start, f"Ignition Switch {position} Position", ["Circuit", "Circuit Low", "Circuit High"])
family(2539, "Low Pressure Fuel System Sensor", CIRCUIT)
family(2544, 'Torque Management Request Input Signal "A"', ["", "Range/Performance", "Low", "High"])
family(2548, 'Torque Management Request Input Signal "B"', ["", "Range/Performance", "Low", "High"])
family(2552, "Throttle/Fuel Inhibit", CIRCUIT[:4])
family(2556, "Engine Coolant Level Sensor/Switch", CIRCUIT[:4])
run(2560, ["Engine Coolant Level Low", "A/C Control Module Requested MIL Illumination"])
family(2562, "Turbocharger Boost Control Position Sensor", CIRCUIT)
family(2567, "Direct Ozone Reduction Catalyst Temperature Sensor", CIRCUIT_ERRATIC)
family(2572, "Direct Ozone Reduction Catalyst Deterioration Sensor", CIRCUIT_ERRATIC)
put(2577, "Direct Ozone Reduction Catalyst Efficiency Below Threshold")

family(2600, 'Coolant Pump "A"', CONTROL_RANGE)
run(2604, ['Intake Air Heater "A" Circuit Range/Performance', 'Intake Air Heater "A" Circuit/Open',
           'Intake Air Heater "B" Circuit Range/Performance',
           'Intake Air Heater "B" Circuit Low', 'Intake Air Heater "B" Circuit High',
           "Intake Air Heater System Performance", "ECM/PCM Internal Engine Off Timer Performance"])
family(2611, "A/C Refrigerant Distribution Valve", CONTROL)
for start, signal in ((2614, "Camshaft Position"), (2617, "Crankshaft Position"), (2620, "Throttle Position")):
    family(start, f"{signal} Output", ["Circuit/Open", "Circuit Low", "Circuit High"])
family(2623, "Injector Control Pressure Regulator", ["Circuit/Open", "Circuit Low", "Circuit High"])
family(2626, "O2 Sensor Pumping Current Trim", ["Circuit/Open", "Circuit Low", "Circuit High"], "(Bank 1 Sensor 1)")
family(2629, "O2 Sensor Pumping Current Trim", ["Circuit/Open", "Circuit Low", "Circuit High"], "(Bank 2 Sensor 1)")
family(2632, 'Fuel Pump "B"', CONTROL)
run(2635, ['Fuel Pump "A" Low Flow/Performance', 'Fuel Pump "B" Low Flow/Performance'])
family(2637, 'Torque Management Feedback Signal "A"', ["", "Range/Performance", "Low", "High"])
family(2641, 'Torque Management Feedback Signal "B"', ["", "Range/Performance", "Low", "High"])
ROCKER = ["Control Circuit/Open", "System Performance or Stuck Off", "System Stuck On", "Control Circuit Low",
          "Control Circuit High"]
for start, letter, bank in ((2645, "A", 1), (2650, "B", 1), (2655, "A", 2), (2660, "B", 2)):
    family(start, f'"{letter}" Rocker Arm Actuator', ROCKER, f"(Bank {bank})")
family(2665, 'Fuel Shutoff Valve "B"', CONTROL)
put(2668, "Fuel Mode Indicator Lamp Control Circuit")
family(2669, 'Actuator Supply Voltage "B"', ["Circuit/Open", "Circuit Low", "Circuit High"])
run(2672, ["Injection Pump Timing Offset", "Injection Pump Timing Calibration Error",
           "Injection Pump Fuel Calibration Error"])
family(2675, "Air Cleaner Inlet", CONTROL)

FRICTION = "Apply Time Range/Performance"
run(2700, [f'Transmission Friction Element "{letter}" {FRICTION}' for letter in "ABCDEF"])
family(2706, 'Shift Solenoid "F"', SOLENOID)
run(2711, ["Unexpected Mechanical Gear Disengagement", "Hydraulic Power Unit Leakage"])
for start, letter in ((2713, "D"), (2722, "E"), (2731, "F")):
    family(start, f'Pressure Control Solenoid "{letter}"', SOLENOID)
    family(start + 5, f'Pressure Control Solenoid "{letter}"', CONTROL_RANGE)
family(2740, 'Transmission Fluid Temperature Sensor "B"', CIRCUIT)
family(2745, 'Intermediate Shaft Speed Sensor "B"', SPEED)
family(2749, 'Intermediate Shaft Speed Sensor "C"', SPEED)
family(2753, "Transmission Fluid Cooler", CONTROL)
TCC_PC = "Torque Converter Clutch Pressure Control Solenoid"
run(2756, [TCC_PC, f"{TCC_PC} Control Circuit Performance or Stuck Off", f"{TCC_PC} Control Circuit Stuck On",
           f"{TCC_PC} Control Circuit Electrical", f"{TCC_PC} Control Circuit Intermittent",
           f"{TCC_PC} Control Circuit/Open", f"{TCC_PC} Control Circuit Range/Performance",
           f"{TCC_PC} Control Circuit High", f"{TCC_PC} Control Circuit Low"])
family(2765, 'Input/Turbine Speed Sensor "B"', SPEED)
run(2769, ["Torque Converter Clutch Circuit Low", "Torque Converter Clutch Circuit High"])
family(2771, "Four Wheel Drive (4WD) Low Switch", CIRCUIT[:4])
family(2775, "Upshift Switch", ["Circuit Range/Performance", "Circuit Low", "Circuit High",
                                "Circuit Intermittent/Erratic"])
family(2779, "Downshift Switch", ["Circuit Range/Performance", "Circuit Low", "Circuit High",
                                  "Circuit Intermittent/Erratic"])
run(2783, ["Torque Converter Temperature Too High", 'Input/Turbine Speed Sensor "A"/"B" Correlation',
           "Clutch Actuator Temperature Too High", "Gear Shift Actuator Temperature Too High",
           "Clutch Temperature Too High", "Auto Shift Manual Adaptive Learning at Limit",
           "Clutch Adaptive Learning at Limit"])
family(2790, "Gate Select Direction", ["Circuit", "Circuit Low", "Circuit High"])
family(2793, "Gear Shift Direction", ["Circuit", "Circuit Low", "Circuit High"])
run(2796, ["Auxiliary Transmission Fluid Pump Control Circuit", "Auxiliary Transmission Fluid Pump Performance"])

family(2800, 'Transmission Range Sensor "B"', CIRCUIT, "(PRNDL Input)")
run(2805, ['Transmission Range Sensor "A"/"B" Correlation', "Transmission Range Sensor Alignment"])
for start, letter in ((2807, "G"), (2816, "H"), (2825, "J")):
    family(start, f'Pressure Control Solenoid "{letter}"', SOLENOID)
    family(start + 5, f'Pressure Control Solenoid "{letter}"', CONTROL_RANGE)
